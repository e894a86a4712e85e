#pragma once

#include <QByteArray>
#include <QTemporaryDir>

/// A folder of its own for what a target writes; the working directory as long as it lives.
class ScratchFolder final
{
    Q_DISABLE_COPY_MOVE(ScratchFolder)

public:
    ScratchFolder();
    ~ScratchFolder();

    /// Writes \a bytes as the file \a name in the folder, and returns its path.
    QString write(const QString &name, const QByteArray &bytes) const;

    /// Writes \a bytes as a file whose name none had before: QSettings may take a file of the same
    /// name, size and time for unchanged. Keeps only the newest.
    QString writeSettings(const QByteArray &bytes);

private:
    QTemporaryDir m_folder;
    QString m_settings;
    int m_number = 0;
};
