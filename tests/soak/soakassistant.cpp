#include "app/base/apppaths.h"
#include "app/base/loghandler.h"
#include "app/base/settingsfile.h"
#include "app/startup/heap.h"
#include "app/startup/qtenvironment.h"
#include "resources/resources.h"
#include "tests/soak/ownhandles.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/mainwindow/miravel.h"
#include "ui/preview/imagedisplay.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QPushButton>
#include <QTimer>

namespace {

constexpr int refreshMs = 3000;
constexpr int previewMs = 5000;
constexpr int lookedAtMs = 400;
constexpr int screensMs = 20000;
constexpr int handlesMs = 5000;

void closePreview()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (qobject_cast<ImageDisplay *>(window) != nullptr) {
            window->close();
        }
    }
}

/// Opens one picture of the conversation after the other, and closes it soon: it covers the window.
void openPreview(const Miravel &window)
{
    static int turn = 0;
    const QList<PictureRow *> rows = window.findChildren<PictureRow *>();
    if (!rows.isEmpty()) {
        rows.at(turn++ % rows.size())->button()->click();
        QTimer::singleShot(lookedAtMs, closePreview);
    }
}

/// What the window does when a screen comes or goes, and when its resolution changes.
void changeScreens(Miravel &window)
{
    window.slotResize();
    window.OnLogicalDotsPerInchChanged();
}

/// Notes in a file beside the program what nobody can count from outside.
void noteHandles()
{
    const QString handles = ownHandles();
    QFile file(QStringLiteral("handles.txt"));
    if (!handles.isEmpty() && file.open(QIODevice::Append)) {
        file.write(handles.toLatin1() + '\n');
    }
}

/// Calls \a work every \a ms.
template <typename Work>
void repeat(QTimer &timer, int ms, Work work)
{
    QObject::connect(&timer, &QTimer::timeout, work);
    timer.start(ms);
}

} // namespace

/// The assistant as the virtual-desktop client starts it, but for the refresh of the hot questions,
/// which a test cannot wait half an hour for, and for what needs no hands to be done to it: its
/// pictures are opened, and its screens change.
int main(int argc, char *argv[])
{
    giveLargeBlocksBack();
    clearQtEnvironment();
    QApplication app(argc, argv);
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    initResources();
    QApplication::setFont(QFont(QStringLiteral("Microsoft YaHei")));
    initAppPaths(QStringLiteral("vdi"));
    const SettingsFile settings(configFilePath);
    initLogSetting(settings.value(QStringLiteral("Log/level")).toString(), logFolderPath);
    qInstallMessageHandler(logMessageHandler);

    QObject::connect(&app, &QGuiApplication::lastWindowClosed, &app, &QCoreApplication::quit);
    Miravel window;
    window.startForVdiClient();
    window.show();
    QTimer refresh;
    repeat(refresh, refreshMs, [&window] { window.refreshHotQuestionsTimer(); });
    QTimer preview;
    repeat(preview, previewMs, [&window] { openPreview(window); });
    QTimer screens;
    repeat(screens, screensMs, [&window] { changeScreens(window); });
    QTimer handles;
    repeat(handles, handlesMs, noteHandles);
    return QApplication::exec();
}
