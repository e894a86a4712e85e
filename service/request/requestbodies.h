#pragma once

#include <QByteArray>
#include <QString>

// The bodies of the three service calls: JSON objects (RFC 8259), compact, UTF-8, members in
// ascending order of their names.

/// What every body carries.
struct CallSettings
{
    int channelId = 0;
    int recommendSize = 0; ///< how many questions are asked for
    QString robotId;
};

/// What an answer call adds.
struct AskFields
{
    QString rawQuery;
    QString currentDomain;
    QString accountId;
    QString source;
    QString originalQuestion;
    qint64 questionId = 0; ///< written as a whole number, all 64 bits of it
};

/// The body of the hot-questions call.
[[nodiscard]] QByteArray hotQuestionsBody(const CallSettings &settings);

/// The body of the suggestions call; \a text is what is typed so far.
[[nodiscard]] QByteArray associationBody(const CallSettings &settings, const QString &text);

/// The body of the answer call.
[[nodiscard]] QByteArray askBody(const CallSettings &settings, const AskFields &fields);
