#pragma once

#include "service/request/httpsrequest.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QString>

/// The three calls of the question service. Made and destroyed on the GUI thread, used from one
/// thread at a time, whichever that is. Every call blocks its thread in a nested event loop for at
/// most its timeout, the first and third for up to a second more while they resolve the endpoint.
/// Nothing is thrown; what went wrong is in the log.
class IdpInterface
{
public:
    /// The result array of the hot-questions reply, empty on any failure.
    QJsonArray hot_questions();

    /// The result array of the suggestions for the typed \a text, empty on any failure. Goes to the
    /// endpoint of the last resolution, or to the configured server when there is none.
    QJsonArray association_questions(QString text);

    /// The whole reply to a question; a null document when there is none or it is no JSON.
    QJsonDocument Ask_And_Answer(QString rawQuery, QString accountId, QString source,
                                 QString originalQuestion, qint64 questionId);

    /// Sends the requests; its configPath is the settings file of the calls as well.
    httpsRequest request;

    // How long each call waits for its reply, in ms. Suggestions are worth nothing once the user
    // has typed on; an answer is worth a long wait.
    int hotTimeoutMs = 200000;
    int associationTimeoutMs = 400;
    int askTimeoutMs = 800000;
};
