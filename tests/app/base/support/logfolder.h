#pragma once

#include <QByteArray>
#include <QMessageLogContext>
#include <QString>
#include <QTemporaryDir>

/// A folder for the log file of one test.
class LogFolder final
{
    Q_DISABLE_COPY_MOVE(LogFolder)

public:
    LogFolder();

    /// What initLogSetting() is given, and the two files that follow from it.
    [[nodiscard]] QString base() const { return file(QStringLiteral("Miravel")); }
    [[nodiscard]] QString live() const { return base() + QStringLiteral(".log"); }
    [[nodiscard]] QString backup() const { return live() + QStringLiteral(".bk"); }

    [[nodiscard]] QString path() const { return m_folder.path(); }
    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

/// A log longer than this, in bytes, is too long.
constexpr qint64 tenMebibytes = 10'485'760;

/// Line 82 of "main.cpp".
[[nodiscard]] QMessageLogContext exampleContext();

/// What the file \a path holds; nothing when it cannot be read.
[[nodiscard]] QByteArray contentOf(const QString &path);

/// Makes \a path a file of \a bytes bytes without writing them.
[[nodiscard]] bool makeFile(const QString &path, qint64 bytes);
