#pragma once

#include "service/reply/answer.h"
#include "service/request/httpsrequest.h"
#include "service/request/idpinterface.h"

#include <QJsonArray>
#include <QObject>

/// Asks the question service in the name of the desktop's user and tells what came back: first one
/// of the three results, or none for a reply of no known kind, then replied(). Lives on the GUI
/// thread.
class QuestionCycle : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(QuestionCycle)

public:
    /// Looks up the user's name; a warning in the log says that there is none.
    explicit QuestionCycle(QObject *parent);

    /// Asks one question. Returns when the answer has come or its time is over, at most 800 s, and
    /// its signals have been emitted; the window stays responsive while it waits.
    void ask(const QString &question, const QString &source, const QString &originalQuestion,
             qint64 questionId);

    /// The service's suggestions for the typed \a text, empty on any failure. Waits for them for at
    /// most 0.4 s, in which the window stays responsive.
    [[nodiscard]] QJsonArray suggestionsFor(const QString &text);

    /// The service that is asked. Its time limits may be changed between two calls.
    [[nodiscard]] IdpInterface &service() { return m_service; }

    /// Whether an address of the service was found. False means that the network is in the way.
    [[nodiscard]] bool isServiceFound() const;

    /// No more questions wait at a time; mostQuestionsUnderWay() tells how many may.
    static constexpr int mostUnderWay = 160;

signals:
    /// A question was not sent because too many others wait.
    void notSent();

    /// A question is about to be sent; waitEnded() tells when its reply has come or its time is
    /// over, before the signals below. Questions that are asked meanwhile do both in between.
    void asking();
    void waitEnded();

    /// The service has an answer.
    void normalResult(QString question, QString standardQuestion, QString reply);

    /// The service has an answer and recommends other questions.
    void multiResult(QString question, Answer answer);

    /// The service has no answer but recommends \a count questions, maybe none.
    void noResult(int count, QVector<ListedQuestion> recommends, QString question);

    /// The round trip is over. \a reply is the text of the answer, empty when none came.
    void replied(QString reply);

private:
    void tellResult(const QString &question, const Answer &answer);

    int m_underWay = 0; ///< questions that wait, inside each other
    IdpInterface m_service;
    httpsRequest m_endpoint;
    QString userName; ///< of the desktop, by which questions are asked
};
