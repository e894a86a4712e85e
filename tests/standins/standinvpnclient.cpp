#include "tests/standins/standinvpnclient.h"

#include <QDir>
#include <QFile>
#include <QSettings>

QString installVpnClient(const QString &folder, const QString &library)
{
    QDir(folder).mkpath(QStringLiteral("client"));
    const QString client = QDir::toNativeSeparators(folder + QStringLiteral("/client"));
    if (!QFile::copy(library, client + QStringLiteral("\\toolSDK.dll"))) {
        qFatal("cannot copy the stand-in library");
    }
    return client + QStringLiteral("\\client.ico");
}

bool canRegisterVpnClient()
{
#ifdef Q_OS_WIN
    return false;
#else
    return true;
#endif
}

void registerVpnClient(const QString &iconPath)
{
    QSettings registry(
        QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\"
                       "Uninstall\\Ostrel NORVIK VPN"),
        QSettings::NativeFormat);
    registry.setValue(QStringLiteral("DisplayIcon"), iconPath);
}
