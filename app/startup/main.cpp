#include "app/base/apppaths.h"
#include "app/base/librarysearch.h"
#include "app/base/loghandler.h"
#include "app/base/logstream.h"
#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "app/base/startgate.h"
#include "app/startup/closerequests.h"
#include "app/startup/heap.h"
#include "app/startup/lateicon.h"
#include "app/startup/lateplugins.h"
#include "app/startup/qtenvironment.h"
#include "app/startup/qtnames.h"
#include "app/startup/singleapplication.h"
#include "app/startup/systemidentity.h"
#include "app/startup/translation.h"
#include "resources/resources.h"
#include "ui/mainwindow/miravel.h"
#include "ui/style/displayscale.h"
#include "ui/style/screenfit.h"
#include "ui/style/windowsize.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QDir>
#include <QFont>
#include <QIcon>

namespace {

const QLatin1String vdiClient("vdi");
const QLatin1String launcher("ombra");

} // namespace

int main(int argc, char *argv[])
{
    narrowLibrarySearch();
    giveLargeBlocksBack();
    clearQtEnvironment();
    hideQtNames();
    followDisplayScale();
    SingleApplication app(argc, argv);
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    LatePlugins latePlugins;

    initResources();
    const QIcon icon = lateIcon(QStringLiteral(":/Images/Miravel.png"));
    QApplication::setWindowIcon(icon);
    const QFont font(QStringLiteral("Microsoft YaHei"));
    QApplication::setFont(font);

    const QCommandLineOption typeOption(QStringLiteral("Type"), QString(), QStringLiteral("Name"));
    QCommandLineParser parser;
    parser.addOption(typeOption);
    parser.process(app);
    QString callerType = parser.value(typeOption);
    initAppPaths(callerType);

    const SettingsFile settings(configFilePath);
    const QString level = settings.value(settingsName(SettingsKey::LogLevel)).toString().toUpper();
    initLogSetting(level, logFolderPath);
    qInstallMessageHandler(logMessageHandler);

    LOG_INFO() << "Caller Type: " << callerType;
    LOG_INFO() << "miravelVersion: " << miravelVersion;
    logRefusedSettings(configFilePath);

    if (installationLayout() == InstallationLayout::Shortcut) {
        callerType = vdiClient;
    }
    const bool fromLauncher = callerType == launcher;
    if (app.isRunning() || (!fromLauncher && callerType != vdiClient)) {
        return 0; // an unknown caller is shown nothing
    }

    const ScreenFit screenFit(windowSize);
    introduceToSystem();
    installTranslation(app, QStringLiteral("."));
    QObject::connect(&app, &QGuiApplication::lastWindowClosed, &app,
                     &SingleApplication::makeRoomForNext);
    QObject::connect(&app, &QGuiApplication::lastWindowClosed, &app, &QCoreApplication::quit);
    startgate::close();
    QObject::connect(&latePlugins, &LatePlugins::ended, startgate::open);
    Miravel window;
    if (fromLauncher) {
        window.startForLauncher();
    } else {
        window.startForVdiClient();
    }
    app.w = &window;
    const CloseRequests closeRequests(&window);
    latePlugins.endAfterPictureOf(window);
    window.show();
    return QApplication::exec();
}
