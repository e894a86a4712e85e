#include "service/diagnosis/probehosts.h"

QString webProbeHost()
{
    return QStringLiteral(MIRAVEL_WEB_PROBE_HOST);
}

QString itProbeHost()
{
    return QStringLiteral(MIRAVEL_IT_PROBE_HOST);
}

QString cloudProbeHost()
{
    return QStringLiteral(MIRAVEL_CLOUD_PROBE_HOST);
}

QString publicDns1()
{
    return QStringLiteral("8.8.8.8");
}

QString publicDns2()
{
    return QStringLiteral("114.114.114.114");
}
