#include "bench/rows.h"
#include "bench/timing.h"
#include "ui/answer/qaregion.h"

#include <QCoreApplication>

#include <malloc.h>

namespace {

constexpr int early = 50;
constexpr int late = 5000;
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

} // namespace

Rows measureConversation()
{
    QARegion region;
    region.show();
    std::vector<double> earlyCosts;
    std::vector<double> lateCosts;
    double heapBefore = 0;
    double heapAfter = 0;
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
    return {
        {QStringLiteral("append"), QStringLiteral("question and answer number 5,000"),
         QStringLiteral("number 50"), QStringLiteral("µs"), median(lateCosts), median(earlyCosts),
         2},
        {QStringLiteral("exchange-memory"), QStringLiteral("memory of a further exchange"),
         QString(), QStringLiteral("KiB"),
         (heapAfter - heapBefore) / (memoryTo - memoryFrom) / 1024, 0, 120},
    };
}
