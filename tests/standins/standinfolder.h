#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A folder of its own in which a stand-in command is found under a name of choice. The folder
/// becomes the working directory and, while the object lives, the search path, so that nothing else
/// is found. (Windows searches the working directory before the path all the same, and the system's
/// own folders after it.) One at a time.
class StandInFolder final
{
    Q_DISABLE_COPY_MOVE(StandInFolder)

public:
    StandInFolder();
    ~StandInFolder();

    [[nodiscard]] QString path() const;

    /// Puts the stand-in command into the folder, and into the working directory where that is
    /// another one by now, under the name \a command, e.g. "ping".
    void install(const QString &command) const;

    /// The command, called with the first argument \a key ("default": without one), acts in the
    /// \a manner "answer", "fail" (answer with an error status), "late <ms>", "flood <MiB>" (filler
    /// before the answer), "reader" (reads its input to the end first), "linger" (answers, then
    /// stays), "stubborn" (the same, ignoring polite requests to end) or "mute" (closes its output,
    /// then stays), and prints \a output. Without this it fails at once.
    void answer(const QString &key, const QByteArray &manner, const QByteArray &output) const;

    /// The arguments of each call so far, joined by blanks.
    [[nodiscard]] QStringList calls() const;

    /// Whether a process of any call so far still exists.
    [[nodiscard]] bool isAnyAlive() const;

private:
    [[nodiscard]] QStringList callLines() const;

    QTemporaryDir m_folder;
    QString m_previousFolder;
    QByteArray m_previousPath;
};
