#include "tests/ui/preview/previewtest.h"

#include "resources/resources.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>

PreviewTest::PreviewTest() = default;
PreviewTest::~PreviewTest() = default;

QPixmap PreviewTest::picture(const QSize &size)
{
    QPixmap pixmap(size);
    pixmap.fill(Qt::blue);
    return pixmap;
}

QPixmap PreviewTest::picture(int width, int height)
{
    return picture(QSize(width, height));
}

QSize PreviewTest::widerThanTheDesktop()
{
    return {QGuiApplication::primaryScreen()->size().width() + 100, 300};
}

void PreviewTest::initTestCase()
{
    initResources();
    m_before = QDir::currentPath();
}

void PreviewTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QDir::setCurrent(m_folder->path());
    QVERIFY(QDir().mkdir(QStringLiteral("gif")));
}

void PreviewTest::cleanup()
{
    m_window.reset();
    QDir::setCurrent(m_before);
    m_folder.reset();
}

void PreviewTest::open(const QPixmap &pixmap, bool animated, int index)
{
    m_window = std::make_unique<ImageDisplay>();
    m_window->PreviewWin(pixmap, QStringLiteral("标题"), animated, index);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    paint();
}

QPushButton *PreviewTest::button(const QString &name) const
{
    const QList<QPushButton *> buttons = m_window->findChildren<QPushButton *>();
    for (QPushButton *candidate : buttons) {
        if (candidate->accessibleName() == name) {
            return candidate;
        }
    }
    qFatal("no button %s", qPrintable(name));
}

void PreviewTest::click(const QString &name) const
{
    button(name)->click();
}

void PreviewTest::paint() const
{
    m_window->repaint();
}

void PreviewTest::turnWheel(int delta) const
{
    QWheelEvent event(onPicture, m_window->mapToGlobal(onPicture), QPoint(), QPoint(0, delta),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    event.ignore();
    QApplication::sendEvent(m_window.get(), &event);
    QVERIFY(event.isAccepted());
}

void PreviewTest::mouse(QEvent::Type type, const QPoint &position, Qt::MouseButton pressed) const
{
    QWidget *target = m_window->childAt(position);
    if (!target) {
        target = m_window.get();
    }
    const bool move = type == QEvent::MouseMove;
    const bool release = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, target->mapFrom(m_window.get(), position),
                      m_window->mapToGlobal(position), move ? Qt::NoButton : pressed,
                      release ? Qt::NoButton : Qt::MouseButtons(pressed), Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

QLabel *PreviewTest::label() const
{
    return m_window->findChild<QLabel *>(QStringLiteral("pictureLabel"));
}

QSize PreviewTest::shownSize() const
{
    return label()->pixmap(Qt::ReturnByValue).size();
}

void PreviewTest::saveAnimation(int number, const QSize &size)
{
    // GIF89a: a canvas of any size, two frames of one pixel in its corner, 20 ms each, for ever.
    const auto word = [](int value) {
        return QByteArray(1, static_cast<char>(value & 0xff)) + static_cast<char>(value >> 8);
    };
    const QByteArray frame = QByteArray::fromHex("21f9040002000000"
                                                 "2c00000000010001000002024401003b");
    QByteArray data("GIF89a");
    data += word(size.width()) + word(size.height()) + QByteArray::fromHex("810000");
    data += QByteArray::fromHex("ff00000000ff000000000000");
    data += QByteArray::fromHex("21ff0b") + "NETSCAPE2.0" + QByteArray::fromHex("0301000000");
    data += frame.chopped(1) + frame;
    QFile file(QStringLiteral("gif/%1.gif").arg(number));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(data), data.size());
}
