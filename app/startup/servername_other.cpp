#include "app/startup/servername.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

bool isOwnFile(const QString &name)
{
    // Joined as QLocalServer does it: an unusable TMPDIR gives an empty path, thus the root folder.
    const QString path = QDir::cleanPath(QDir::tempPath()) + QLatin1Char('/') + name;
    return QFileInfo(path).canonicalFilePath()
        == QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath();
}
