#include "ui/text/linkguard.h"

#include "app/base/logstream.h"

#include <QDesktopServices>
#include <QUrl>

namespace {

/// No scheme, local files, scripts, and the schemes by which Windows starts programs.
const QStringList &refusedSchemes()
{
    static const QStringList schemes{
        QStringLiteral(""),
        QStringLiteral("file"),
        QStringLiteral("javascript"),
        QStringLiteral("vbscript"),
        QStringLiteral("data"),
        QStringLiteral("shell"),
        QStringLiteral("search"),
        QStringLiteral("search-ms"),
        QStringLiteral("ms-appinstaller"),
        QStringLiteral("ms-cxh"),
        QStringLiteral("ms-cxh-full"),
        QStringLiteral("ms-excel"),
        QStringLiteral("ms-gamingoverlay"),
        QStringLiteral("ms-its"),
        QStringLiteral("ms-msdt"),
        QStringLiteral("ms-officecmd"),
        QStringLiteral("ms-powerpoint"),
        QStringLiteral("ms-quick-assist"),
        QStringLiteral("ms-search"),
        QStringLiteral("ms-settings"),
        QStringLiteral("ms-windows-store"),
        QStringLiteral("ms-word"),
        QStringLiteral("mk"),
        QStringLiteral("its"),
        QStringLiteral("mhtml"),
        QStringLiteral("hcp"),
        QStringLiteral("help"),
        QStringLiteral("res"),
        QStringLiteral("telnet"),
        QStringLiteral("rlogin"),
        QStringLiteral("tn3270"),
        QStringLiteral("ldap"),
        QStringLiteral("jar"),
        QStringLiteral("about"),
        QStringLiteral("view-source"),
    };
    return schemes;
}

} // namespace

LinkGuard::LinkGuard(QObject *parent)
    : QObject(parent)
{
    for (const QString &scheme : refusedSchemes()) {
        QDesktopServices::setUrlHandler(scheme, this, "refuse");
    }
}

LinkGuard::~LinkGuard()
{
    for (const QString &scheme : refusedSchemes()) {
        QDesktopServices::unsetUrlHandler(scheme);
    }
}

void LinkGuard::refuse(const QUrl &url)
{
    LOG_WARNING() << "link is not opened: " << url.toDisplayString();
}
