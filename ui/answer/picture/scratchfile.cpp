#include "ui/answer/picture/scratchfile.h"

#include <QDirIterator>

ScratchFile::ScratchFile(const QString &folder)
    : m_folder(folder)
{
}

bool ScratchFile::open()
{
    if (m_file.isOpen()) {
        return true;
    }
    const int descriptor = openScratchFile(m_folder);
    if (descriptor < 0) {
        m_error = qt_error_string();
        return false;
    }
    return m_file.open(descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered,
                       QFileDevice::AutoCloseHandle);
}

bool ScratchFile::write(qint64 place, const QByteArray &data)
{
    if (!open()) {
        return false;
    }
    const bool written = m_file.seek(place) && m_file.write(data) == data.size();
    if (!written) {
        m_error = m_file.errorString();
    }
    return written;
}

QByteArray ScratchFile::read(qint64 place, int size)
{
    if (!m_file.isOpen() || !m_file.seek(place)) {
        return {};
    }
    const QByteArray data = m_file.read(size);
    return data.size() == size ? data : QByteArray();
}

void removeLeftScratchFiles(const QString &folder)
{
    // Names are compared here: Qt's name filter would bring in the library of regular expressions,
    // for nothing else in most sessions.
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        const QString path = entries.next();
        if (!entries.fileName().startsWith(scratchFilePrefix)) {
            continue;
        }
        const QFileInfo info = entries.fileInfo();
        if (info.isFile() && !info.isSymLink() && isRemovableScratchFile(path)) {
            QFile::remove(path);
        }
    }
}
