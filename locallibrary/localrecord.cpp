#include "locallibrary/localrecord.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

constexpr int prefixCharacters = 5;
constexpr int questionPiece = 1;
constexpr int firstAnswerPiece = 2;

/// What a first paragraph must compare greater than to count as a question.
const QString &leastQuestion()
{
    static const QString text(QChar(0x0005));
    return text;
}

QString answerFrom(const QStringList &pieces)
{
    QString answer;
    for (int i = firstAnswerPiece; i < pieces.size(); ++i) {
        if (!pieces.at(i).simplified().isEmpty()) {
            answer += QLatin1String("<p>") + pieces.at(i) + QLatin1String("</p>");
        }
    }
    return answer;
}

} // namespace

std::optional<LocalRecord> readLocalRecord(const QString &text)
{
    static const QRegularExpression bodyTag(QStringLiteral("(<body>|</body>)"));
    static const QRegularExpression paragraphTag(QStringLiteral("(<p>|</p>)"));
    const QStringList parts = text.split(bodyTag);
    if (parts.size() < 2) {
        return std::nullopt;
    }
    const QStringList pieces = parts.at(1).split(paragraphTag);
    if (pieces.size() <= firstAnswerPiece || pieces.at(questionPiece) <= leastQuestion()) {
        return std::nullopt;
    }
    return LocalRecord{pieces.at(questionPiece).mid(prefixCharacters), answerFrom(pieces)};
}
