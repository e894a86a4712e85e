#include "ui/text/textwrap.h"

#include "app/base/logstream.h"

#include <QFontMetrics>
#include <QHash>
#include <QVector>

#include <algorithm>

namespace {

/// The advance widths of single characters, each asked of the font once.
class CharacterWidths
{
public:
    explicit CharacterWidths(const QFontMetrics &metrics)
        : m_metrics(metrics)
    {
    }

    int of(const QString &character)
    {
        const auto known = m_widths.constFind(character);
        if (known != m_widths.constEnd()) {
            return *known;
        }
        const int width = m_metrics.horizontalAdvance(character);
        m_widths.insert(character, width);
        return width;
    }

private:
    const QFontMetrics &m_metrics;
    QHash<QString, int> m_widths;
};

int characterLength(const QString &text, int position)
{
    const bool pair = text.at(position).isHighSurrogate() && position + 1 < text.size()
                   && text.at(position + 1).isLowSurrogate();
    return pair ? 2 : 1;
}

/// Where the line that starts at \a start ends: one character before the one that reaches \a width;
/// \a start itself when no character fits or the sum never reaches it.
int lineEnd(CharacterWidths &widths, const QString &text, int start, int width)
{
    int sum = 0;
    int previous = start;
    for (int position = start; position < text.size();) {
        const int length = characterLength(text, position);
        sum += widths.of(text.mid(position, length));
        if (sum >= width) {
            return previous;
        }
        previous = position;
        position += length;
    }
    return start;
}

/// Whether \a text fits from \a start on. Only the beginning of a long text is measured: when that
/// is far wider than the line, nothing that follows makes it fit again.
bool restFits(const QFontMetrics &metrics, CharacterWidths &widths, const QString &text, int start,
              int width)
{
    const int farTooWide = 3 * width + 100;
    int sum = 0;
    int position = start;
    while (position < text.size() && sum < farTooWide) {
        const int length = characterLength(text, position);
        sum += widths.of(text.mid(position, length));
        position += length;
    }
    if (position < text.size()
        && metrics.horizontalAdvance(text.mid(start, position - start)) > 2 * width) {
        return false;
    }
    return metrics.horizontalAdvance(text.mid(start)) <= width;
}

constexpr int longestMarkRun = 100;

bool takesNoRoom(QChar character)
{
    switch (character.category()) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return true;
    default:
        return false;
    }
}

/// The first \a most characters of \a text and an ellipsis, or all of it; no pair is torn.
QString cutTo(const QString &text, int most)
{
    if (text.size() <= most) {
        return text;
    }
    const bool splitsPair = text.at(most - 1).isHighSurrogate();
    return text.left(splitsPair ? most - 1 : most) + QChar(u'…');
}

/// How many characters of \a text are shown: \a most, or fewer when many of them turn or join
/// others.
int affordableLength(const QString &text, int most)
{
    const int end = qMin(text.size(), most);
    int cost = 0;
    for (int position = 0; position < end; ++position) {
        cost += layoutCost(text.at(position));
        if (cost > most) {
            return position;
        }
    }
    return end;
}

} // namespace

QString brokenToWidth(const QFontMetrics &metrics, const QString &text, int width)
{
    CharacterWidths widths(metrics);
    QString wrapped;
    wrapped.reserve(text.size() + text.size() / 8);
    int start = 0;
    while (!restFits(metrics, widths, text, start, width)) {
        int end = lineEnd(widths, text, start, width);
        if (end == start) {
            wrapped += QLatin1Char('\n');
            end = start + characterLength(text, start);
        }
        wrapped += text.midRef(start, end - start);
        start = end;
        if (start == text.size()) {
            return wrapped;
        }
        wrapped += QLatin1Char('\n');
    }
    return wrapped + text.mid(start);
}

int layoutCost(QChar character)
{
    constexpr int formatCost = 5;
    return character.category() == QChar::Other_Format ? formatCost : 1;
}

QString shownPart(const QString &text)
{
    return withoutMarkRuns(cutTo(text, affordableLength(text, maxShownCharacters)));
}

QString withoutMarkRuns(const QString &text)
{
    int run = 0;
    const auto isTooMany = [&run](QChar character) {
        run = takesNoRoom(character) ? run + 1 : 0;
        return run > longestMarkRun;
    };
    const auto first = std::find_if(text.cbegin(), text.cend(), isTooMany);
    if (first == text.cend()) {
        return text;
    }
    QString kept = text;
    run = 0;
    const auto end = std::remove_if(kept.begin(), kept.end(), isTooMany);
    kept.truncate(static_cast<int>(end - kept.begin()));
    LOG_WARNING() << "marks are too many to be shown, left out: " << text.size() - kept.size();
    return kept;
}

QString rowPart(const QString &text)
{
    return cutTo(text, mostOfARow);
}
