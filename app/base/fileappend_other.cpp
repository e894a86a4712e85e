#include "app/base/fileappend.h"

#include <QFile>

bool appendToFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    // Unbuffered: the bytes reach the system in one piece.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        return false;
    }
    file.write(bytes);
    return true;
}
