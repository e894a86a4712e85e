#include "service/diagnosis/pingoutput.h"

#include <QStringList>

namespace {

/// The text between the positions, the last one excluded; all that follows \a from when \a to lies
/// before it.
QString between(const QString &text, int from, int to)
{
    return text.mid(from, to - from);
}

QString resolvedAddress(const QString &output)
{
    // With neither bracket this is from 0 with length -1: the whole output.
    return between(output, output.indexOf(QLatin1Char('[')) + 1, output.indexOf(QLatin1Char(']')));
}

int averageTime(const QString &output)
{
    static const QString label = QStringLiteral("平均 = ");
    const int start = output.indexOf(label.leftRef(2)); // what follows the two characters varies
    if (start < 0) {
        return 0;
    }
    const int end = output.lastIndexOf(QLatin1String("ms"));
    return between(output, start + label.size(), end).toInt();
}

} // namespace

bool pingAnswered(const QString &output)
{
    static const QStringList marks{QStringLiteral("TTL="), QStringLiteral("时间="),
                                   QStringLiteral("time=")};
    // All end in "=", which is found many times faster than a text whose case is ignored.
    for (int at = output.indexOf(QLatin1Char('=')); at >= 0;
         at = output.indexOf(QLatin1Char('='), at + 1)) {
        const QStringRef upToHere = output.leftRef(at + 1);
        for (const QString &mark : marks) {
            if (upToHere.endsWith(mark, Qt::CaseInsensitive)) {
                return true;
            }
        }
    }
    return false;
}

void parsePingOutput(const QString &output, QString &address, int *averageMs, int *lossPercent)
{
    address = resolvedAddress(output);
    *averageMs = averageTime(output);
    if (!lossPercent) {
        return;
    }
    const int open = output.indexOf(QLatin1Char('('));
    const int percent = output.indexOf(QLatin1Char('%'));
    if (open >= 0 && percent >= 0) {
        *lossPercent = between(output, open + 1, percent).toInt();
    }
}
