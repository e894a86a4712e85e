#include "ui/mainwindow/suggestions/suggestionhighlight.h"

namespace {

// How often the matcher may try again from one place of a text, and how many places a text may
// have: together they bound the time of every pattern. A text that fits into a row is far shorter.
const QString steps = QStringLiteral("(*LIMIT_MATCH=5000)");
constexpr int mostCharacters = 300;

const QString matchStart = QStringLiteral(
    "<font style='font-size:12px; background-color:white; color:rgb(41,100,245);'>");
const QString matchEnd = QStringLiteral("</font>");

} // namespace

SuggestionHighlight::SuggestionHighlight(const QString &typed)
    : m_pattern(steps + QLatin1Char('(') + typed + QLatin1Char(')'),
                QRegularExpression::CaseInsensitiveOption)
{
    // After a bracket a star begins a command to the matcher, such as one that lifts the limit.
    // A typed "?:" takes the group away, and with it what a match is to be replaced by.
    m_givenUp = typed.startsWith(QLatin1Char('*')) || m_pattern.captureCount() < 1;
}

QString SuggestionHighlight::apply(const QString &text)
{
    if (m_givenUp || text.size() > mostCharacters) {
        return {};
    }
    QString html;
    int copied = 0;
    bool emptyAtEnd = false;
    QRegularExpressionMatchIterator matches = m_pattern.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        if (match.capturedStart() < copied || match.capturedEnd() < match.capturedStart()) {
            return {}; // a pattern can move the start of its own match to anywhere
        }
        html += text.midRef(copied, match.capturedStart() - copied).toString().toHtmlEscaped()
              + matchStart + match.captured(1).toHtmlEscaped() + matchEnd;
        copied = match.capturedEnd();
        emptyAtEnd = match.capturedStart() == text.size();
    }
    // Behind an empty match at the end Qt finds no place to go on from, which is no error.
    if (!matches.isValid() && !emptyAtEnd) {
        m_givenUp = true; // it ran away
        return {};
    }
    return html.isEmpty() ? html : html + text.midRef(copied).toString().toHtmlEscaped();
}
