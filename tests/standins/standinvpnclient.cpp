#include "tests/standins/standinvpnclient.h"

#include "tests/standins/standinregistry.h"

#include <QDir>
#include <QFile>

QString installVpnClient(const QString &folder, const QString &library)
{
    QDir(folder).mkpath(QStringLiteral("client"));
    const QString client = QDir::toNativeSeparators(folder + QStringLiteral("/client"));
    if (!QFile::copy(library, client + QStringLiteral("\\toolSDK.dll"))) {
        qFatal("cannot copy the stand-in library");
    }
    return client + QStringLiteral("\\client.ico");
}

void registerVpnClient(StandInRegistry &registry, const QString &iconPath)
{
    registry.setText(QStringLiteral("SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\"
                                    "Uninstall\\Ostrel NORVIK VPN"),
                     QStringLiteral("DisplayIcon"), iconPath);
}
