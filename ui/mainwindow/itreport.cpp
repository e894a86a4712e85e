#include "ui/mainwindow/itreport.h"

#include "app/base/apppaths.h"
#include "app/base/logstream.h"
#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "service/diagnosis/netstatetestthread.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

bool itReportHasSite(NetStateTestThread &diagnosis)
{
    if (installationLayout() == InstallationLayout::Shortcut) {
        LOG_INFO() << "INVIRTUAL_SHORTCUT, Intranet environment, jump to IT reporting website";
        return true;
    }
    if (diagnosis.InternalExternal_netJudg() == NetStateTestThread::InternalNetwork) {
        LOG_INFO() << "VELISTRA_NEW, Intranet environment, jump to IT reporting website";
        return true;
    }
    LOG_INFO() << "VELISTRA_NEW, External network environment, prompt to call IT";
    return false;
}

void openItReportSite(const QString &configPath)
{
    const SettingsFile settings(configPath);
    const QString site = settings.value(settingsName(SettingsKey::ItReportAddress)).toString();
    QDesktopServices::openUrl(QUrl(site));
}

QString callItSupportText()
{
    return QCoreApplication::translate("Miravel", "您好，请拨打IT支持热线: ")
         + QString::fromLocal8Bit(MIRAVEL_SUPPORT_TELEPHONE);
}
