#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

/// A shared library that belongs to the VPN client and is loaded at run time. What it needs itself
/// is looked for in its own folder too. It stays loaded when this object goes, since it may run
/// threads of its own. Used on one thread at a time.
class ClientLibrary final
{
    Q_DISABLE_COPY_MOVE(ClientLibrary)

public:
    /// Looks at \a file, a path or, where the system finds libraries by their name, a name. Loads
    /// nothing yet.
    explicit ClientLibrary(const QString &file);

    /// False when it is absent or cannot be loaded; problem() tells these apart.
    [[nodiscard]] bool load();

    /// The address of the function \a name; null without.
    [[nodiscard]] QFunctionPointer resolve(const char *name) const;

    /// Lets go of the loaded library, so that another one put in its place later is seen.
    void unload();

    /// Empty unless the file is there but cannot be loaded: then the file and the system's reason.
    [[nodiscard]] QString problem() const;

    /// Writes problem(), unless empty, as a warning, once in this process for the same text. Any
    /// thread.
    void warnOnce() const;

    /// Where the system would look for the library \a name ("KorVpnTool"), in that order: beside
    /// the program, in the system's folders, on the search path. Only those that are there, except
    /// where the system has places of its own to look.
    [[nodiscard]] static QStringList places(const QString &name);

private:
    [[nodiscard]] bool isThere() const;
    bool loadFile(); // the system's part: sets m_handle or m_reason

    QString m_file;
    QString m_reason;
    void *m_handle = nullptr;
};
