#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/service/support/testserver.h"
#include "tests/support/testconfig.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/waitingdots.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QProxyStyle>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <memory>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace {

const QByteArray askPath = "/ask";

#ifdef Q_OS_WIN

/// A desktop whose user wants nothing to move, as long as this lives. Only this session's is
/// changed.
class SystemWithoutMotion
{
public:
    SystemWithoutMotion() { set(FALSE); }
    ~SystemWithoutMotion() { set(TRUE); }
    Q_DISABLE_COPY_MOVE(SystemWithoutMotion)

private:
    static void set(BOOL wanted)
    {
        // The value goes where otherwise a pointer to it would.
        SystemParametersInfoW(SPI_SETCLIENTAREAANIMATION, 0,
                              reinterpret_cast<void *>(static_cast<INT_PTR>(wanted)), 0);
    }
};

#else

/// The style of a desktop whose user wants nothing to move.
class StillStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animate ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

class SystemWithoutMotion
{
public:
    SystemWithoutMotion() { QApplication::setStyle(new StillStyle); } // the application owns it
};

#endif

} // namespace

/// The sign of life while questions wait.
class TestWaitingDots : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nothingWaits_nothingIsShown_andNoTimerRuns();
    void shortWait_showsNothing();
    void longWait_isShown_untilItEnds();
    void nestedWaits_areShown_untilTheLastEnds();
    void dots_move();
    void systemWithoutMotion_dotsStandStill();
    void minimisedWindow_dotsRest();
    void heldAnswer_showsTheDots_andMovesNothing();
    void dots_lieBesideTheEntries_andLetTheMouseThrough();

private:
    [[nodiscard]] WaitingDots *dots() const { return m_region->findChild<WaitingDots *>(); }
    [[nodiscard]] bool isStill() const;
    void askHeld(const std::function<void()> &meanwhile);

    std::unique_ptr<TestConfig> m_config;
    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<QARegion> m_region;
};

void TestWaitingDots::init()
{
    initResources();
    initAppPaths(QString());
    m_config = std::make_unique<TestConfig>();
    m_server = std::make_unique<TestServer>();
    m_config->setServer(m_server->port());
    m_config->set(QStringLiteral("url/askquesturl"), QString::fromLatin1(askPath));
    m_config->set(QStringLiteral("RobotId/robotId"), QStringLiteral("robot"));
    m_config->set(QStringLiteral("ihttpInfo/iHttpMode"), QStringLiteral("0"));
    QDir::setCurrent(m_config->root());
    m_region = std::make_unique<QARegion>();
    m_region->resize(646, 490);
    m_region->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_region.get()));
}

void TestWaitingDots::cleanup()
{
    QApplication::setStyle(QStringLiteral("fusion"));
    m_region.reset();
    m_server.reset();
    QDir::setCurrent(QDir::tempPath());
    m_config.reset();
}

bool TestWaitingDots::isStill() const
{
    const auto timers = dots()->findChildren<QTimer *>();
    return std::none_of(timers.cbegin(), timers.cend(),
                        [](const QTimer *timer) { return timer->isActive(); });
}

void TestWaitingDots::nothingWaits_nothingIsShown_andNoTimerRuns()
{
    QVERIFY(!dots()->isVisible());
    QVERIFY(isStill());
}

void TestWaitingDots::shortWait_showsNothing()
{
    dots()->begin();
    QVERIFY(!isStill()); // counts the time
    dots()->end();
    QVERIFY(!dots()->isVisible());
    QVERIFY(isStill());
}

void TestWaitingDots::longWait_isShown_untilItEnds()
{
    QElapsedTimer clock;
    clock.start();
    dots()->begin();
    QVERIFY(!dots()->isVisible());
    QTRY_VERIFY(dots()->isVisible());
    QVERIFY2(clock.elapsed() >= 390, qPrintable(QString::number(clock.elapsed())));
    dots()->end();
    QVERIFY(!dots()->isVisible());
    QVERIFY(isStill());
}

void TestWaitingDots::nestedWaits_areShown_untilTheLastEnds()
{
    dots()->begin();
    dots()->begin();
    QTRY_VERIFY(dots()->isVisible());
    dots()->end();
    QVERIFY(dots()->isVisible());
    dots()->end();
    QVERIFY(!dots()->isVisible());
    dots()->begin();
    QVERIFY(!dots()->isVisible()); // counts anew
    QTRY_VERIFY(dots()->isVisible());
    dots()->end();
}

void TestWaitingDots::dots_move()
{
    dots()->begin();
    QTRY_VERIFY(dots()->isVisible());
    const QImage first = dots()->grab().toImage();
    QTRY_VERIFY(dots()->grab().toImage() != first);
    QTRY_COMPARE(dots()->grab().toImage(), first); // round by round
    dots()->end();
}

void TestWaitingDots::systemWithoutMotion_dotsStandStill()
{
    const SystemWithoutMotion still;
    dots()->begin();
    QTRY_VERIFY(dots()->isVisible());
    QVERIFY(isStill());
    const QImage first = dots()->grab().toImage();
    QVERIFY(first != QImage(first.size(), first.format()));
    dots()->end();
}

void TestWaitingDots::minimisedWindow_dotsRest()
{
    dots()->begin();
    QTRY_VERIFY(dots()->isVisible());
    m_region->hide();
    QVERIFY(isStill());
    m_region->show();
    QVERIFY(!isStill());
    dots()->end();
}

void TestWaitingDots::askHeld(const std::function<void()> &meanwhile)
{
    m_server->setReplyFor(
        askPath,
        held(httpReply(R"({"errorCode":"0","result":{"resultType":"NO_RESULT","reply":"x"}})")));
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [this, &poll, &meanwhile] {
        if (!m_server->requests().isEmpty()) {
            poll.stop();
            meanwhile();
            m_server->release();
        }
    });
    poll.start(1);
    m_region->Miss_RecomSend(QStringLiteral("问"), QStringLiteral("rawquery"), QString(), 0);
}

void TestWaitingDots::heldAnswer_showsTheDots_andMovesNothing()
{
    const auto *list = m_region->findChild<ConversationList *>();
    const QRect place = list->geometry();
    QElapsedTimer clock;
    clock.start();
    askHeld([this, list, place, &clock] {
        QVERIFY(!dots()->isVisible() || clock.elapsed() >= 390); // the request may take its time
        QTRY_VERIFY(dots()->isVisible());
        QCOMPARE(list->count(), 1);
        QCOMPARE(list->geometry(), place);
    });
    QCOMPARE(list->count(), 2);
    QVERIFY(!dots()->isVisible());
    QVERIFY(isStill());
}

void TestWaitingDots::dots_lieBesideTheEntries_andLetTheMouseThrough()
{
    const auto *list = m_region->findChild<ConversationList *>();
    m_region->showAnswer(QStringLiteral("题"), QStringLiteral("<p>答</p>"));
    dots()->begin();
    QTRY_VERIFY(dots()->isVisible());
    const QRect place = dots()->geometry();
    QVERIFY(list->geometry().contains(place));
    const QWidget *entry = list->itemWidget(list->item(0));
    const auto pieces = entry->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *piece : pieces) {
        QVERIFY(piece->mapTo(m_region.get(), QPoint()).x()
                > dots()->mapTo(m_region.get(), dots()->rect().bottomRight()).x());
    }
    QVERIFY(dots()->parentWidget()->childAt(place.center()) != dots());
    QVERIFY(dots()->focusPolicy() == Qt::NoFocus);
    dots()->end();
}

QTEST_MAIN(TestWaitingDots)
#include "tst_waitingdots.moc"
