#include "app/servername.h"

#include <QtGlobal>

#ifdef Q_OS_WIN

bool mayRemoveServerName(const QString &name)
{
    Q_UNUSED(name)
    return true;
}

#else

#include <QDir>
#include <QFile>

#include <sys/stat.h>

bool mayRemoveServerName(const QString &name)
{
    // Joined as QLocalServer does it: an unusable TMPDIR gives an empty path, thus the root folder.
    const QByteArray path
        = QFile::encodeName(QDir::cleanPath(QDir::tempPath()) + QLatin1Char('/') + name);
    struct stat status = {};
    return lstat(path.constData(), &status) != 0 || S_ISSOCK(status.st_mode);
}

#endif
