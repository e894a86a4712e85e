#include "fuzz/support/check.h"
#include "fuzz/support/target.h"
#include "service/diagnosis/pingoutput.h"

#include <QString>

namespace {

constexpr int untouched = -7;

bool plainlyAnswered(const QString &output)
{
    return output.contains(QLatin1String("TTL="), Qt::CaseInsensitive)
        || output.contains(QStringLiteral("时间="), Qt::CaseInsensitive)
        || output.contains(QLatin1String("time="), Qt::CaseInsensitive);
}

int plainAverage(const QString &output)
{
    const int label = output.indexOf(QStringLiteral("平均"));
    if (label < 0) {
        return 0;
    }
    const int start = label + 5;
    return output.mid(start, output.lastIndexOf(QLatin1String("ms")) - start).toInt();
}

int plainLoss(const QString &output)
{
    const int open = output.indexOf(QLatin1Char('('));
    const int percent = output.indexOf(QLatin1Char('%'));
    return open >= 0 && percent >= 0 ? output.mid(open + 1, percent - open - 1).toInt() : untouched;
}

} // namespace

/// The summary of the ping program against its description.
void runTarget(const QByteArray &input)
{
    const QString output = QString::fromUtf8(input);
    check(pingAnswered(output) == plainlyAnswered(output), "an answer is seen by its marks");

    QString address;
    int average = untouched;
    int loss = untouched;
    parsePingOutput(output, address, &average, &loss);
    const int begin = output.indexOf(QLatin1Char('[')) + 1;
    check(address == output.mid(begin, output.indexOf(QLatin1Char(']')) - begin),
          "the address is what the brackets hold");
    check(average == plainAverage(output), "the average stands behind its label");
    check(loss == plainLoss(output), "the loss stands in brackets");
    parsePingOutput(output, address, &average, nullptr);
}
