#include "tools/doctor/vpncheck.h"

#include "service/gateway/korvpntool.h"
#include "service/gateway/vpnaccount.h"
#include "tools/doctor/librarybits.h"

#include <QDir>

namespace {

constexpr int ownBits = 8 * sizeof(void *);

QString shown(const LibraryReport &report)
{
    const auto bits = libraryBits(report.file);
    return QDir::toNativeSeparators(report.file)
         + (bits ? QStringLiteral(" (%1 bits)").arg(*bits) : QString());
}

/// The bits first: the system's own words do not always tell them.
QString reason(const LibraryReport &report)
{
    const auto bits = libraryBits(report.file);
    return bits.value_or(ownBits) == ownBits
             ? report.reason
             : QStringLiteral("it is made for %1 bits, the program for %2 (%3)")
                   .arg(*bits)
                   .arg(ownBits)
                   .arg(report.reason);
}

Finding unusable(const QString &name, const LibraryReport &report, const QString &without)
{
    return toMend(
        QStringLiteral("%1 is there but cannot be used: %2").arg(name, reason(report)),
        QStringLiteral(
            "Install the 64-bit VPN client anew, with everything in the library's folder. "
            "Until then the program works as without the library: %1.")
            .arg(without));
}

Finding checkGatewayLibrary()
{
    const QString name = QStringLiteral("KorVpnTool");
    const LibraryReport report = examineKorVpnTool();
    switch (report.state) {
    case LibraryReport::State::Usable:
        return good(name + QStringLiteral(": ") + shown(report));
    case LibraryReport::State::Unusable:
        return unusable(name, report,
                        QStringLiteral("outside the company's network the service is not found"));
    default:
        return good(name + QStringLiteral(" is not here, so there is no VPN client to ask"));
    }
}

/// Where the registry says that the VPN client is, there is this library.
Finding checkAccountLibrary()
{
    const QString name = QStringLiteral("toolSDK");
    const QString without = QStringLiteral("the network diagnosis does not name the VPN's account");
    const QString icon = vpnClientIconPath();
    if (icon.isEmpty()) {
        return good(
            QStringLiteral("the registry names no VPN client, so %1 is not looked for").arg(name));
    }
    const LibraryReport report = examineVpnAccountLibrary(icon);
    switch (report.state) {
    case LibraryReport::State::Usable:
        return good(name + QStringLiteral(": ") + shown(report));
    case LibraryReport::State::Unusable:
        return unusable(name, report, without);
    default:
        return note(
            QStringLiteral("the registry says that the VPN client is at %1, but %2 is not there")
                .arg(icon, name),
            QStringLiteral("Install the VPN client anew. Until then %1.").arg(without));
    }
}

} // namespace

Findings checkVpnLibraries()
{
    return {checkGatewayLibrary(), checkAccountLibrary()};
}
