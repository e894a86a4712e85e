#pragma once

#include "service/request/serviceendpoint.h"

#include <QString>

/// Whether a request goes to the configured server because it asked for that fall-back and the
/// \a resolved endpoint is not complete.
[[nodiscard]] bool fallsBackToConfigured(bool configFallback, const ServiceEndpoint &resolved);

/// The URL of a request: scheme by \a httpMode (0 is http, anything else https), then the endpoint
/// and \a urlPath as they stand, even when they are empty.
[[nodiscard]] QString requestUrl(int httpMode, const ServiceEndpoint &target,
                                 const QString &urlPath);

/// Whether \a httpMode stands for https.
[[nodiscard]] bool isHttps(int httpMode);
