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

namespace {

constexpr int early = 50;
constexpr int late = 10000;
constexpr int around = 20; ///< exchanges before and after those that are timed with them
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

/// The bytes that are allocated now.
double heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// The longest stall of each way to move through all of \a region's conversation and to use its
/// far end.
Rows measureMoving(QARegion &region)
{
    auto &list = *region.findChild<ConversationList *>();
    QScrollBar &bar = *list.verticalScrollBar();
    StallWatch watch;
    const auto stallRow = [](const char *id, const char *what, double ms) {
        return Row{
            QLatin1String(id), QLatin1String(what), QString(), QStringLiteral("ms"), ms, 0, 16};
    };
    const double wheel = watch.longestDuring([&list, &bar] {
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
    const double drag = watch.longestDuring([&bar] {
        constexpr int steps = 100;
        bar.setSliderDown(true);
        for (int step = steps; step >= 0; --step) {
            bar.setSliderPosition(static_cast<int>(qint64(bar.maximum()) * step / steps));
            QCoreApplication::processEvents();
        }
        bar.setSliderDown(false);
    });
    const double copy = watch.longestDuring(
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
    std::vector<double> earlyCosts;
    std::vector<double> lateCosts;
    double heapBefore = 0;
    double heapAfter = 0;
    const double heapAtStart = heapBytes();
    for (int number = 1; number <= late + around; ++number) {
        const double cost = microseconds([&region, number] { appendExchange(region, number); });
        if (std::abs(number - early) <= around) {
            earlyCosts.push_back(cost);
        } else if (std::abs(number - late) <= around) {
            lateCosts.push_back(cost);
        }
        if (number == memoryFrom) {
            heapBefore = heapBytes();
        } else if (number == memoryTo) {
            heapAfter = heapBytes();
        }
    }
    const double heapAtEnd = heapBytes();
    constexpr double kib = 1024;
    Rows rows{
        {QStringLiteral("append"), QStringLiteral("question and answer number 10,000"),
         QStringLiteral("number 50"), QStringLiteral("µs"), median(lateCosts), median(earlyCosts),
         1.5},
        {QStringLiteral("exchange-memory"), QStringLiteral("memory of a further exchange"),
         QString(), QStringLiteral("KiB"), (heapAfter - heapBefore) / (memoryTo - memoryFrom) / kib,
         0, 16},
        {QStringLiteral("conversation-memory"), QStringLiteral("memory of 10,000 exchanges"),
         QString(), QStringLiteral("MiB"), (heapAtEnd - heapAtStart) / kib / kib, 0, 200},
    };
    return rows + measureMoving(region);
}
