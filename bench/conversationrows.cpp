#include "bench/rows.h"
#include "bench/stallwatch.h"
#include "bench/timing.h"
#include "ui/answer/conversationcopier.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/qaregion.h"

#include <QCoreApplication>
#include <QScrollBar>
#include <QWheelEvent>

#include <malloc.h>

#include <functional>
#include <vector>

namespace {

constexpr int early = 50;
constexpr int late = 10000;
constexpr int timed = 41; ///< exchanges that are timed, with number 50 in their middle
constexpr int movingRounds = 3;
constexpr int memoryFrom = 1000;
constexpr int memoryTo = 3000;

/// Appends question and answer \a number, as after a reply, and lets the window settle.
void appendExchange(QARegion &region, int number)
{
    region.addQuestionBubble(QStringLiteral("第%1个问题：如何修改桌面密码？").arg(number));
    region.showAnswer(QStringLiteral("如何修改密码？"),
                      QStringLiteral("<p>请打开“设置”，选择“账号与安全”，点击“修改密码”，"
                                     "按提示输入旧密码和新密码后保存，第%1次。</p>")
                          .arg(number));
    QCoreApplication::processEvents();
}

/// What a further exchange costs in \a old, and what it costs in a conversation that has just
/// begun. Exchanges of both are timed in turn: the machine is never the same for minutes.
TwoCosts compareAppending(QARegion &old)
{
    QARegion young;
    young.show();
    int number = 0;
    while (number < early - timed / 2) {
        appendExchange(young, ++number);
    }
    int oldNumber = late;
    return compare(
        timed, [&] { return microseconds([&] { appendExchange(old, ++oldNumber); }); },
        [&] { return microseconds([&] { appendExchange(young, ++number); }); });
}

/// The bytes that are allocated now.
double heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// The longest stall, in the best of some rounds, of each way to move through all of \a region's
/// conversation and to use its far end.
Rows measureMoving(QARegion &region)
{
    auto &list = *region.findChild<ConversationList *>();
    QScrollBar &bar = *list.verticalScrollBar();
    StallWatch watch;
    const auto leastDuring = [&watch](const std::function<void()> &action) {
        std::vector<double> stalls;
        for (int round = 0; round < movingRounds; ++round) {
            stalls.push_back(watch.longestDuring(action));
        }
        return least(stalls);
    };
    const auto stallRow = [](const char *id, const char *what, double ms) {
        return Row{
            QLatin1String(id), QLatin1String(what), QString(), QStringLiteral("ms"), ms, 0, 16};
    };
    const double wheel = leastDuring([&list, &bar] {
        bar.setValue(bar.maximum());
        constexpr int turns = 200; // of a wheel without a catch
        constexpr int pixelsOfNotch = 60;
        const int notches = bar.maximum() / turns / pixelsOfNotch + 1;
        for (int value = -1; value != bar.value();) {
            value = bar.value();
            const QPointF place = list.viewport()->rect().center();
            QWheelEvent event(place, list.viewport()->mapToGlobal(place.toPoint()), QPoint(),
                              QPoint(0, notches * QWheelEvent::DefaultDeltasPerStep), Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(list.viewport(), &event);
            QCoreApplication::processEvents();
        }
    });
    const double drag = leastDuring([&bar] {
        constexpr int steps = 100;
        bar.setSliderDown(true);
        for (int step = steps; step >= 0; --step) {
            bar.setSliderPosition(static_cast<int>(qint64(bar.maximum()) * step / steps));
            QCoreApplication::processEvents();
        }
        bar.setSliderDown(false);
    });
    const double copy = leastDuring(
        [&region] { region.qaRightHitMenu_copySlots(0, ConversationCopier::Question); });
    return {stallRow("stall-wheel", "stall: the wheel through 10,000 exchanges", wheel),
            stallRow("stall-drag", "stall: dragging the bar through them", drag),
            stallRow("stall-copy", "stall: copying the first of them", copy)};
}

} // namespace

Rows measureConversation()
{
    QARegion region;
    region.show();
    double heapBefore = 0;
    double heapAfter = 0;
    const double heapAtStart = heapBytes();
    for (int number = 1; number <= late; ++number) {
        appendExchange(region, number);
        if (number == memoryFrom) {
            heapBefore = heapBytes();
        } else if (number == memoryTo) {
            heapAfter = heapBytes();
        }
    }
    const double heapAtEnd = heapBytes();
    const TwoCosts costs = compareAppending(region);
    constexpr double kib = 1024;
    Rows rows{
        {QStringLiteral("append"), QStringLiteral("question and answer number 10,000"),
         QStringLiteral("number 50"), QStringLiteral("µs"), costs.first, costs.second, 1.5},
        {QStringLiteral("exchange-memory"), QStringLiteral("memory of a further exchange"),
         QString(), QStringLiteral("KiB"), (heapAfter - heapBefore) / (memoryTo - memoryFrom) / kib,
         0, 16},
        {QStringLiteral("conversation-memory"), QStringLiteral("memory of 10,000 exchanges"),
         QString(), QStringLiteral("MiB"), (heapAtEnd - heapAtStart) / kib / kib, 0, 200},
    };
    return rows + measureMoving(region);
}
