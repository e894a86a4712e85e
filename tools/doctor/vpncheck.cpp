#include "tools/doctor/vpncheck.h"

#include "service/gateway/korvpntool.h"
#include "service/gateway/vpnaccount.h"

#include <QDir>

namespace {

Finding judge(const QString &name, const LibraryReport &report, const QString &without)
{
    switch (report.state) {
    case LibraryReport::State::Usable:
        return good(QStringLiteral("%1: %2").arg(name, QDir::toNativeSeparators(report.file)));
    case LibraryReport::State::Unusable:
        return toMend(
            QStringLiteral("%1 is there but cannot be used: %2").arg(name, report.reason),
            QStringLiteral("Install the 64-bit VPN client anew, with everything in the "
                           "library's folder. Until then the program works as without the "
                           "library: %1.")
                .arg(without));
    default:
        return good(QStringLiteral("%1 is not here, so there is no VPN client to ask").arg(name));
    }
}

} // namespace

Findings checkVpnLibraries()
{
    return {judge(QStringLiteral("KorVpnTool"), examineKorVpnTool(),
                  QStringLiteral("outside the company's network the service is not found")),
            judge(QStringLiteral("toolSDK"), examineVpnAccountLibrary(vpnClientIconPath()),
                  QStringLiteral("the network diagnosis does not name the VPN's account"))};
}
