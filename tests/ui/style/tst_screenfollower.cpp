#include "resources/resources.h"
#include "tests/ui/support/screenscale.h"
#include "ui/style/screenfollower.h"
#include "ui/style/styles.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include <memory>

/// A window whose scale changes while it is open.
class TestScreenFollower : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void anotherScreen_makesPicturesAnew();
    void sameScreen_makesPicturesAnew();
    void sameScale_leavesPictures();
    void sizeThatTheSystemGave_isTakenBack();
    void windowThatMayBeResized_keepsItsSize();
    void maximisedWindow_staysMaximised();
    void windowThatWasNeverShown_isLeftAlone();

private:
    void show();
    [[nodiscard]] bool isLarge() const;

    std::unique_ptr<QWidget> m_window;
    QPushButton *m_button = nullptr;
};

namespace {

constexpr QSize windowSize(400, 300);

} // namespace

void TestScreenFollower::initTestCase()
{
    initResources();
}

void TestScreenFollower::init()
{
    screenscale::set(1);
    m_window = std::make_unique<QWidget>();
    m_window->resize(windowSize);
    m_button = new QPushButton(m_window.get());
    m_button->setStyleSheet(styles::threeStateSprite(QLatin1String("btn-close.png"), 16));
    new ScreenFollower(m_window.get());
}

void TestScreenFollower::cleanup()
{
    m_window.reset();
}

void TestScreenFollower::show()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(!isLarge());
}

/// Whether the button's strip is the one for scaled screens.
bool TestScreenFollower::isLarge() const
{
    return m_button->styleSheet().contains(QLatin1String(":/Images/large/btn-close.png"));
}

void TestScreenFollower::anotherScreen_makesPicturesAnew()
{
    show();
    for (const qreal ratio : {2.0, 1.0, 1.5}) {
        screenscale::set(ratio);
        emit m_window->windowHandle()->screenChanged(QGuiApplication::primaryScreen());
        QTRY_COMPARE(isLarge(), ratio > 1);
        QCOMPARE(m_window->size(), windowSize);
    }
}

void TestScreenFollower::sameScreen_makesPicturesAnew()
{
    show();
    for (const qreal ratio : {1.25, 1.0}) {
        screenscale::set(ratio);
        m_window->update(); // as the system does
        QTRY_COMPARE(isLarge(), ratio > 1);
        QTRY_COMPARE(m_window->size(), windowSize);
    }
}

void TestScreenFollower::sameScale_leavesPictures()
{
    show();
    const QString style = m_button->styleSheet() + QStringLiteral("QToolTip{color:red;}");
    m_button->setStyleSheet(style);
    emit m_window->windowHandle()->screenChanged(QGuiApplication::primaryScreen());
    m_window->repaint();
    QCoreApplication::processEvents();
    QCOMPARE(m_button->styleSheet(), style);
}

/// Before Qt knew of the new scale.
void TestScreenFollower::sizeThatTheSystemGave_isTakenBack()
{
    m_window->setFixedSize(windowSize);
    show();
    m_window->windowHandle()->setMaximumSize(2 * windowSize);
    m_window->windowHandle()->resize(2 * windowSize);
    QTRY_COMPARE(m_window->size(), 2 * windowSize);
    screenscale::set(2);
    m_window->update();
    QTRY_COMPARE(m_window->size(), windowSize);
    QVERIFY(isLarge());
}

void TestScreenFollower::windowThatMayBeResized_keepsItsSize()
{
    show();
    m_window->resize(500, 350);
    QCoreApplication::processEvents();
    screenscale::set(1.5);
    m_window->update();
    QTRY_VERIFY(isLarge());
    QTRY_COMPARE(m_window->size(), QSize(500, 350));
}

void TestScreenFollower::maximisedWindow_staysMaximised()
{
    m_window->showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    screenscale::set(2);
    m_window->update();
    QTRY_VERIFY(isLarge());
    QVERIFY(m_window->isMaximized());
}

void TestScreenFollower::windowThatWasNeverShown_isLeftAlone()
{
    screenscale::set(2);
    QImage image(windowSize, QImage::Format_RGB32);
    m_window->render(&image);
    QCoreApplication::processEvents();
    QVERIFY(!isLarge());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QCOMPARE(m_window->size(), windowSize);
}

int main(int argc, char *argv[])
{
    screenscale::allow();
    const QApplication application(argc, argv);
    TestScreenFollower test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_screenfollower.moc"
