#pragma once

#include "service/reply/listedquestion.h"
#include "tools/conformance/check.h"
#include "tools/conformance/examinee.h"

#include <QJsonValue>

struct AskFields;

/// Makes every call in every way that the client does, and judges what is answered: how it came,
/// its shape, its bounds and how long it took.
class Acceptance
{
public:
    /// \a question is asked, typed and searched for; empty to take the first hot question.
    /// \a answers is how many hot questions are asked.
    Acceptance(const Examinee &examinee, const QString &question, int answers);

    [[nodiscard]] Checks hot();
    [[nodiscard]] Checks association();
    [[nodiscard]] Checks ask();

private:
    struct Answered
    {
        Checks checks;
        QJsonValue result; ///< undefined when there is none to read
    };

    using Judge = Findings (*)(const QJsonValue &result, int asked);

    [[nodiscard]] Answered make(const QString &id, CallName call, const QByteArray &body,
                                Judge judge) const;
    [[nodiscard]] Answered suggest(const QString &id, const QString &text, int asked) const;
    [[nodiscard]] Answered askOne(const QString &id, const AskFields &fields) const;
    [[nodiscard]] QString question() const;
    [[nodiscard]] Checks askHotQuestions();

    const Examinee &m_examinee;
    QString m_question;
    int m_answers;
    QVector<ListedQuestion> m_hot;
    QVector<ListedQuestion> m_suggested;
    QVector<ListedQuestion> m_recommended;
    QString m_recommendedBy; ///< the question whose answer held them
};
