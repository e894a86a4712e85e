#pragma once

#include "tests/support/childprocess.h"

#include <QMap>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <memory>
#include <vector>

/// The real program installed in a temporary folder of its own. All that a copy of it touches lies
/// in there: configuration, log and the folder for local names, so that no other copy on the
/// machine counts as the same program. Copies still running end with this object. Use it on one
/// thread; whatever waits, waits for a condition and gives up after patienceMs.
class Installation
{
    Q_DISABLE_COPY(Installation)

public:
    enum class Layout {
        Client, ///< started by a caller ("--Type=..."): config and log beside the program's folder
        Shortcut, ///< started without a caller: config and log inside the program's folder
    };

    /// How long anything is waited for, in ms: only a failing test waits that long.
    static constexpr int patienceMs = 20'000;

    /// Copies the program with its local library and makes empty "config" and "log" folders.
    explicit Installation(Layout layout);
    ~Installation();

    /// False when the folder or the copy could not be made; check it first.
    [[nodiscard]] bool isValid() const;

    /// Absolute path of \a relativePath, counted from the folder that holds the program's folder.
    [[nodiscard]] QString path(const QString &relativePath) const;
    [[nodiscard]] QString programFolder() const;
    [[nodiscard]] QString programPath() const;
    [[nodiscard]] QString configFolder() const;
    [[nodiscard]] QString logFolder() const;
    /// "Miravel.ini" of this layout.
    [[nodiscard]] QString iniPath() const;
    /// "CommonTerminal.ini", in the same place in both layouts.
    [[nodiscard]] QString clientIniPath() const;
    [[nodiscard]] QString logPath() const;
    [[nodiscard]] QString backupLogPath() const;
    /// The name under which a QLocalSocket reaches the running copy.
    [[nodiscard]] QString localName() const;

    /// Sets a key of "Miravel.ini", e.g. "Log/level", and writes the file anew. The value stands in
    /// the file as it is given: quotes and escapes are the caller's matter.
    bool setValue(const QString &key, const QString &value);
    /// Sets a key of "CommonTerminal.ini" and writes the file anew.
    bool setClientValue(const QString &key, const QString &value);
    /// Puts \a content in place of "Miravel.ini".
    bool writeIni(const QByteArray &content) const;

    /// The environment of the copies started from now on.
    QProcessEnvironment &environment();

    /// Qt's platform of the copies started from now on, "offscreen" at first. Empty leaves the
    /// choice to Qt.
    void setPlatform(const QString &platform);

    /// Starts a copy with \a arguments and waits until it runs. It is owned by this object.
    ChildProcess &start(const QStringList &arguments = {});

    /// Waits until a copy's event loop answers on the local name, as a second copy would contact it
    /// (so its window comes to the front).
    [[nodiscard]] bool waitUntilAnswering() const;

    /// The lines of the live log so far, without line ends.
    [[nodiscard]] QStringList logLines() const;
    /// The lines of the live log that contain \a part.
    [[nodiscard]] QStringList logLinesWith(const QString &part) const;
    /// Waits until the live log has at least \a count lines that contain \a part.
    [[nodiscard]] bool waitForLogLines(const QString &part, int count = 1) const;

private:
    /// Section to keys to values, in the order of their names.
    using IniContent = QMap<QString, QMap<QString, QString>>;

    static bool writeFile(const QString &path, const QByteArray &content);
    static bool writeIniFile(const QString &path, const IniContent &content);
    static void setIniKey(IniContent &content, const QString &key, const QString &value);
    [[nodiscard]] QString layoutFolder(const QString &name) const;
    bool install();
    [[nodiscard]] bool installLocalLibrary() const;

    QTemporaryDir m_root;
    Layout m_layout;
    QProcessEnvironment m_environment;
    QString m_platform = QStringLiteral("offscreen");
    IniContent m_ini;
    IniContent m_clientIni;
    bool m_valid = false;
    std::vector<std::unique_ptr<ChildProcess>> m_copies; // ended before the folder is removed
};
