#include "resources/resources.h"
#include "tests/support/logcapture.h"
#include "ui/answer/picture/animationplay.h"

#include <QFile>
#include <QLabel>
#include <QMovie>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

/// How many animations play at a time, and which one gives its room to another.
class TestAnimationPlay : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void tooLargeByItself_standsStill_data();
    void tooLargeByItself_standsStill();
    void withoutRoom_standsStill_andTheSeenOnesPlayOn();
    void outOfSight_givesItsRoomToAnother();
    void roomIsLeft_nothingIsTakenFromThoseOutOfSight();
    void seenAgain_startsAnew();
    void hundredPlay_andNoMore();

private:
    /// A label on the window, seen, and what plays in it.
    struct Picture
    {
        QLabel *label;
        AnimationPlay *play;

        [[nodiscard]] bool plays() const { return label->movie() != nullptr; }
    };
    Picture picture(const QSize &canvas);

    QTemporaryDir m_work;
    QString m_file;
    std::unique_ptr<QWidget> m_window;
};

namespace {

// Two have room, a third one has not.
const QSize largeCanvas(2000, 2000);
const QSize smallCanvas(10, 10);

} // namespace

void TestAnimationPlay::initTestCase()
{
    initResources();
    QVERIFY(m_work.isValid());
    m_file = m_work.filePath(QStringLiteral("waiting.gif"));
    QVERIFY(QFile::copy(QStringLiteral(":/Images/waiting.gif"), m_file));
}

void TestAnimationPlay::init()
{
    m_window = std::make_unique<QWidget>();
    new QVBoxLayout(m_window.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestAnimationPlay::cleanup()
{
    m_window.reset();
}

TestAnimationPlay::Picture TestAnimationPlay::picture(const QSize &canvas)
{
    auto *label = new QLabel(m_window.get());
    label->setFixedSize(4, 4);
    m_window->layout()->addWidget(label);
    label->show();
    m_window->layout()->activate();
    return {label, new AnimationPlay(label, m_file, canvas)};
}

void TestAnimationPlay::tooLargeByItself_standsStill_data()
{
    QTest::addColumn<QSize>("canvas");
    QTest::addColumn<bool>("plays");
    QTest::newRow("the largest") << QSize(2000, 2100) << true;
    QTest::newRow("one column more") << QSize(2001, 2100) << false;
}

void TestAnimationPlay::tooLargeByItself_standsStill()
{
    QFETCH(QSize, canvas);
    QFETCH(bool, plays);
    LogCapture log;
    const Picture shown = picture(canvas);
    QCOMPARE(shown.play->start(), plays);
    QCOMPARE(shown.plays(), plays);
    shown.play->start();
    const QString told = QStringLiteral("warning: animation is too large to be played");
    QCOMPARE(log.linesWith(told).size(), plays ? 0 : 1); // once
}

void TestAnimationPlay::withoutRoom_standsStill_andTheSeenOnesPlayOn()
{
    const Picture first = picture(largeCanvas);
    const Picture second = picture(largeCanvas);
    const Picture third = picture(largeCanvas);
    QVERIFY(first.play->start());
    QVERIFY(second.play->start());
    QVERIFY(!third.play->start());
    QVERIFY(first.plays());
    QVERIFY(second.plays());
    QVERIFY(!third.plays());
}

void TestAnimationPlay::outOfSight_givesItsRoomToAnother()
{
    const Picture first = picture(largeCanvas);
    const Picture second = picture(largeCanvas);
    const Picture third = picture(largeCanvas);
    QVERIFY(first.play->start());
    QVERIFY(second.play->start());
    second.label->hide();
    QVERIFY(third.play->start());
    QVERIFY(first.plays());
    QVERIFY(!second.plays());
    QVERIFY(third.plays());
}

void TestAnimationPlay::roomIsLeft_nothingIsTakenFromThoseOutOfSight()
{
    const Picture first = picture(largeCanvas);
    const Picture second = picture(smallCanvas);
    QVERIFY(first.play->start());
    first.label->hide();
    QVERIFY(second.play->start());
    QVERIFY(first.plays());
}

void TestAnimationPlay::seenAgain_startsAnew()
{
    const Picture first = picture(largeCanvas);
    const Picture second = picture(largeCanvas);
    const Picture third = picture(largeCanvas);
    QVERIFY(first.play->start());
    QVERIFY(second.play->start());
    first.label->hide();
    QVERIFY(third.play->start());
    QVERIFY(!first.plays());
    third.label->hide();
    first.label->show();
    QTRY_VERIFY(first.plays());
    QVERIFY(!third.plays());
}

void TestAnimationPlay::hundredPlay_andNoMore()
{
    for (int i = 0; i < 100; ++i) {
        QVERIFY(picture(smallCanvas).play->start());
    }
    const Picture last = picture(smallCanvas);
    QVERIFY(!last.play->start());
    QVERIFY(!last.plays());
}

QTEST_MAIN(TestAnimationPlay)
#include "tst_animationplay.moc"
