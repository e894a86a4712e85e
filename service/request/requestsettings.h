#pragma once

#include "service/request/serviceendpoint.h"

#include <QString>

/// The values of "Miravel.ini" that every request needs. A missing key gives empty text.
struct RequestSettings
{
    ServiceEndpoint server; ///< the configured service, texts as they stand in the file
    QString tenantId;
    QString key;    ///< decoded
    QString secret; ///< decoded; never logged, never sent
};

/// Opens the settings file \a configPath anew and reads them, so that an edit made between two
/// requests is seen. A missing or unreadable file gives empty values. Any thread.
[[nodiscard]] RequestSettings readRequestSettings(const QString &configPath);

/// The configured service alone.
[[nodiscard]] ServiceEndpoint readConfiguredServer(const QString &configPath);
