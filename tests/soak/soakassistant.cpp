#include "app/base/apppaths.h"
#include "app/base/loghandler.h"
#include "app/startup/heap.h"
#include "app/startup/qtenvironment.h"
#include "resources/resources.h"
#include "ui/mainwindow/miravel.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QSettings>
#include <QTimer>

namespace {

constexpr int refreshMs = 3000;

} // namespace

/// The assistant as the virtual-desktop client starts it, but for the refresh of the hot questions,
/// which a test cannot wait half an hour for.
int main(int argc, char *argv[])
{
    giveLargeBlocksBack();
    clearQtEnvironment();
    QApplication app(argc, argv);
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    initResources();
    QApplication::setFont(QFont(QStringLiteral("Microsoft YaHei")));
    initAppPaths(QStringLiteral("vdi"));
    const QSettings settings(configFilePath, QSettings::IniFormat);
    initLogSetting(settings.value(QStringLiteral("Log/level")).toString(), logFolderPath);
    qInstallMessageHandler(logMessageHandler);

    QObject::connect(&app, &QGuiApplication::lastWindowClosed, &app, &QCoreApplication::quit);
    Miravel window;
    window.startForVdiClient();
    window.show();
    QTimer refresh;
    QObject::connect(&refresh, &QTimer::timeout, &window, &Miravel::refreshHotQuestionsTimer);
    refresh.start(refreshMs);
    return QApplication::exec();
}
