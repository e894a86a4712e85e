#include "tools/doctor/installationcheck.h"

#include "app/base/apppaths.h"
#include "locallibrary/locallibrary.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

QString shown(const QString &path)
{
    return QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
}

Finding checkProgram()
{
    for (const char *name : {"Miravel.exe", "Miravel"}) {
        const QFileInfo program{QLatin1String(name)};
        if (program.isFile()) {
            return good(QStringLiteral("the program: ") + shown(program.filePath()));
        }
    }
    return note(QStringLiteral("there is no Miravel.exe in ") + shown(QStringLiteral(".")),
                QStringLiteral("Name the folder that holds the program: every path is counted "
                               "from there."));
}

Finding checkSettingsFile()
{
    QFile file(miravelConfigPath());
    const QString what = QStringLiteral("the settings: ") + shown(file.fileName());
    if (!QFileInfo(file).isFile()) {
        return toMend(what + QStringLiteral(" is not there"),
                      QStringLiteral("Put Miravel.ini there. A program started without --Type "
                                     "looks elsewhere: try --shortcut."));
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return toMend(what + QStringLiteral(" cannot be read"),
                      QStringLiteral("Give the users the right to read it."));
    }
    if (file.peek(3) == QByteArrayLiteral("\xef\xbb\xbf")) {
        return toMend(what + QStringLiteral(" begins with a byte-order mark"),
                      QStringLiteral("Save it without one: its first group is not found."));
    }
    return good(what);
}

Finding checkClientSettings()
{
    const QString path = clientSettingsPath();
    const QString what = QStringLiteral("the client's settings: ") + shown(path);
    if (QFileInfo(path).isFile()) {
        return good(what);
    }
    return note(what + QStringLiteral(" are not there"),
                QStringLiteral("The virtual-desktop client writes them. Until then the desktop "
                               "counts as logged out and the user has no name."));
}

Finding checkLogFolder()
{
    const QFileInfo folder(QFileInfo(logFolderPath).path());
    const QString what = QStringLiteral("the log folder: ") + shown(folder.filePath());
    if (!folder.isDir()) {
        return toMend(what + QStringLiteral(" is not there"),
                      QStringLiteral("Make it: the program does not, and logs nothing without."));
    }
    if (!folder.isWritable()) {
        return toMend(what + QStringLiteral(" cannot be written to"),
                      QStringLiteral("Give the users the right to write there."));
    }
    return good(what);
}

Finding checkLibrary()
{
    LocalLibrary library;
    library.read();
    const QString what = QStringLiteral("local questions in ") + shown(QStringLiteral("LocalQA"))
                       + QStringLiteral(": ") + QString::number(library.size());
    if (library.size() > 0) {
        return good(what);
    }
    return toMend(what, QStringLiteral("Put the files 0.txt to 29.txt there: they are what users "
                                       "have when the service does not answer."));
}

Finding checkLicenceText()
{
    const QString path
        = QFileInfo(miravelConfigPath()).path() + QStringLiteral("/OpenSourceLicense.txt");
    const QString what = QStringLiteral("the licence text: ") + shown(path);
    if (QFileInfo(path).isFile()) {
        return good(what);
    }
    return note(what + QStringLiteral(" is not there"),
                QStringLiteral("The licence button of the About dialog does nothing without."));
}

} // namespace

Findings checkInstallation()
{
    return {checkProgram(),   checkSettingsFile(), checkClientSettings(),
            checkLogFolder(), checkLibrary(),      checkLicenceText()};
}
