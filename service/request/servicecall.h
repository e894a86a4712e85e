#pragma once

#include "service/request/requestbodies.h"

#include <QByteArray>
#include <QString>

/// One call of the service as the settings file has it. It is read before the call is made: the
/// file is not kept open meanwhile.
struct ServiceCall
{
    QString urlPath;
    QByteArray body;
    int httpMode = 0; ///< 0 is http, anything else https
};

// Each opens the settings file \a configPath anew. Missing keys give empty texts and 0. Any thread.

[[nodiscard]] ServiceCall hotCall(const QString &configPath);

/// \a text is what is typed so far.
[[nodiscard]] ServiceCall associationCall(const QString &configPath, const QString &text);

/// The current domain of \a fields is taken from the file.
[[nodiscard]] ServiceCall askCall(const QString &configPath, AskFields fields);
