#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// A file in a temporary folder for data that would take too much memory. Nobody but the user may
/// open it, its name cannot be guessed, no link is followed to make it, and the system deletes it
/// with the process, however that ends. One thread at a time.
class ScratchFile
{
    Q_DISABLE_COPY(ScratchFile)

public:
    /// Makes nothing yet; the file will lie in \a folder.
    explicit ScratchFile(const QString &folder);

    /// Writes \a data, \a place bytes from the beginning. Returns whether all of it was written;
    /// otherwise the place may be written again.
    [[nodiscard]] bool write(qint64 place, const QByteArray &data);

    /// \a size bytes that were written at \a place; empty when they cannot be read.
    [[nodiscard]] QByteArray read(qint64 place, int size);

    /// Why the last operation failed.
    [[nodiscard]] QString errorString() const { return m_error; }

private:
    [[nodiscard]] bool open();

    QString m_folder;
    QFile m_file;
    QString m_error;
};

/// Removes what scratch files of this program a crash of the machine left in \a folder: those of
/// this user that no living process has open. Any thread.
void removeLeftScratchFiles(const QString &folder);

/// A new scratch file in \a folder, open for reading and writing; -1 when it cannot be made.
[[nodiscard]] int openScratchFile(const QString &folder);

/// Whether \a path is a scratch file of this user that no process needs under its name; where only
/// the removal itself can tell, true.
[[nodiscard]] bool isRemovableScratchFile(const QString &path);

/// What the names of scratch files begin with.
inline const QLatin1String scratchFilePrefix("miravel-pictures-");
