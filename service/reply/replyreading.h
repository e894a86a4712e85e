#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QString>

/// A reply of the service as it was understood.
struct ParsedReply
{
    QJsonDocument document; ///< null when the reply is no JSON
    QJsonParseError::ParseError error = QJsonParseError::NoError;
};

/// Reads \a bytes as UTF-8 up to the first NUL byte and that as JSON.
[[nodiscard]] ParsedReply parseReply(const QByteArray &bytes);

/// What a reply says of itself; empty texts where it says nothing.
struct ReplyStatus
{
    QString errorCode; ///< "0" in a good one
    QString errorMessage;
};

[[nodiscard]] ReplyStatus readStatus(const QJsonDocument &document);

/// The member "result" of the document's object; undefined when there is none.
[[nodiscard]] QJsonValue resultOf(const QJsonDocument &document);

/// The same as an array; empty when it is missing or of another type.
[[nodiscard]] QJsonArray resultArray(const QJsonDocument &document);
