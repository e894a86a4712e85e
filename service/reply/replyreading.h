#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>

/// A reply of the service as it was understood.
struct ParsedReply
{
    QJsonDocument document; ///< null when the reply is no JSON
    QJsonParseError::ParseError error = QJsonParseError::NoError;
};

/// Reads \a bytes as UTF-8 up to the first NUL byte and that as JSON.
[[nodiscard]] ParsedReply parseReply(const QByteArray &bytes);

/// The member "result" of the document's object as an array; empty when anything is missing or of
/// another type.
[[nodiscard]] QJsonArray resultArray(const QJsonDocument &document);
