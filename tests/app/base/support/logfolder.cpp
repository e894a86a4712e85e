#include "tests/app/base/support/logfolder.h"

#include <QFile>

LogFolder::LogFolder()
{
    if (!m_folder.isValid()) {
        qFatal("There is no room for a temporary folder.");
    }
}

QMessageLogContext exampleContext()
{
    return {"main.cpp", 82, "int main()", "default"};
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool makeFile(const QString &path, qint64 bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.resize(bytes);
}
