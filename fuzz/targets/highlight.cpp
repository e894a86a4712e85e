#include "fuzz/support/check.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/target.h"
#include "ui/mainwindow/suggestions/suggestionhighlight.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

const QString matchStart = QStringLiteral(
    "<font style='font-size:12px; background-color:white; color:rgb(41,100,245);'>");
const QString matchEnd = QStringLiteral("</font>");

/// \a question with each match of \a typed replaced by its first group, as rich text.
QString plainlyHighlighted(const QString &typed, const QString &question)
{
    // Characters that stand for the marks while the rest is escaped.
    const QChar begin(0xe000);
    const QChar end(0xe001);
    const QRegularExpression pattern(QLatin1Char('(') + typed + QLatin1Char(')'),
                                     QRegularExpression::CaseInsensitiveOption);
    return QString(question)
        .replace(pattern, begin + QStringLiteral("\\1") + end)
        .toHtmlEscaped()
        .replace(begin, matchStart)
        .replace(end, matchEnd);
}

bool holdsPrivateCharacters(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar character) {
        return character.unicode() == 0xe000 || character.unicode() == 0xe001;
    });
}

} // namespace

/// The highlight of suggestions: the first part of the input is what is typed, the others are the
/// suggested questions. A pattern that runs away is seen by the fuzzer's time limit.
void runTarget(const QByteArray &input)
{
    const QByteArrayList parts = partsOf(input, 2);
    const QString typed = QString::fromUtf8(parts.first());
    SuggestionHighlight highlight(typed);
    for (int i = 1; i < parts.size(); ++i) {
        const QString question = QString::fromUtf8(parts.at(i));
        const QString html = highlight.apply(question);
        check(html.isEmpty() || holdsPrivateCharacters(question)
                  || html == plainlyHighlighted(typed, question),
              "every match is marked");
        const QString again = highlight.apply(question);
        check(again == html || again.isEmpty(), "a question is highlighted the same way twice");
    }
}
