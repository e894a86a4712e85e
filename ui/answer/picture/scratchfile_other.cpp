#include "ui/answer/picture/scratchfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

int openScratchFile(const QString &folder)
{
    // Made anew, with rights for the user alone, or not at all.
    QByteArray name = QFile::encodeName(folder + QLatin1Char('/') + scratchFilePrefix
                                        + QLatin1String("XXXXXX"));
    const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (descriptor >= 0) {
        // The open file needs no name; without one it goes with the process.
        ::unlink(name.constData());
    }
    return descriptor;
}

bool isRemovableScratchFile(const QString &path)
{
    // A living process is about to remove the name itself.
    struct stat info = {};
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 && S_ISREG(info.st_mode)
        && info.st_uid == ::geteuid();
}
