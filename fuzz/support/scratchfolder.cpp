#include "fuzz/support/scratchfolder.h"

#include "fuzz/support/check.h"

#include <QDir>
#include <QFile>

ScratchFolder::ScratchFolder()
{
    check(m_folder.isValid(), "there is room for a temporary folder");
    QDir::setCurrent(m_folder.path());
}

ScratchFolder::~ScratchFolder()
{
    QDir::setCurrent(QDir::rootPath());
}

QString ScratchFolder::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(m_folder.filePath(name));
    check(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
          "a file of the target can be written");
    return file.fileName();
}

QString ScratchFolder::writeSettings(const QByteArray &bytes)
{
    if (!m_settings.isEmpty()) {
        QFile::remove(m_settings);
    }
    m_settings = write(QString::number(++m_number) + QLatin1String(".ini"), bytes);
    return m_settings;
}
