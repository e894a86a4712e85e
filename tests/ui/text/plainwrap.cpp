#include "tests/ui/text/plainwrap.h"

#include <QFontMetrics>
#include <QStringList>

namespace {

/// The characters of \a text; two surrogates that belong together are one.
QStringList charactersOf(const QString &text)
{
    QStringList characters;
    for (const QChar unit : text) {
        const bool secondHalf = unit.isLowSurrogate() && !characters.isEmpty()
                             && characters.last().size() == 1
                             && characters.last().at(0).isHighSurrogate();
        if (secondHalf) {
            characters.last() += unit;
        } else {
            characters.append(QString(unit));
        }
    }
    return characters;
}

/// How many of \a characters the first line takes.
int firstLine(const QFontMetrics &metrics, const QStringList &characters, int width)
{
    int sum = 0;
    for (int i = 0; i < characters.size(); ++i) {
        sum += metrics.horizontalAdvance(characters.at(i));
        if (sum >= width) {
            return qMax(i, 1) - 1;
        }
    }
    return 0;
}

} // namespace

QString plainlyBroken(const QFontMetrics &metrics, const QString &text, int width)
{
    QStringList rest = charactersOf(text);
    QStringList lines;
    while (metrics.horizontalAdvance(rest.join(QString())) > width) {
        int taken = firstLine(metrics, rest, width);
        if (taken == 0 && !lines.isEmpty() && lines.last().isEmpty()) {
            taken = 1;
        }
        lines.append(rest.mid(0, taken).join(QString()));
        rest = rest.mid(taken);
    }
    if (!rest.isEmpty()) {
        lines.append(rest.join(QString()));
    }
    return lines.join(QLatin1Char('\n'));
}
