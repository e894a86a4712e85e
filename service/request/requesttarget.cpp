#include "service/request/requesttarget.h"

namespace {

constexpr int plainHttpMode = 0;

} // namespace

bool fallsBackToConfigured(bool configFallback, const ServiceEndpoint &resolved)
{
    return configFallback && !resolved.isComplete();
}

QString requestUrl(int httpMode, const ServiceEndpoint &target, const QString &urlPath)
{
    const QString scheme
        = isHttps(httpMode) ? QStringLiteral("https://") : QStringLiteral("http://");
    return scheme + target.strAddr + QLatin1Char(':') + target.strPort + urlPath;
}

bool isHttps(int httpMode)
{
    return httpMode != plainHttpMode;
}
