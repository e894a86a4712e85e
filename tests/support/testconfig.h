#pragma once

#include <QMap>
#include <QString>
#include <QTemporaryDir>

/// An installation folder of its own with "config/Miravel.ini" in it.
///
/// The program's folder is that folder itself for a shortcut, and "Miravel" in it for a caller.
class TestConfig final
{
    Q_DISABLE_COPY_MOVE(TestConfig)

public:
    TestConfig();
    ~TestConfig();

    /// Makes this the installation in force, as a program that \a callerType started has it: fixes
    /// the layout and goes to the program's folder, which is left again in the end.
    void enter(const QString &callerType = QString());

    /// Writes the file with \a value for \a key ("group/name") added or replaced.
    void set(const QString &key, const QString &value);

    /// Writes credentials and a server at 127.0.0.1 and \a port.
    void setServer(quint16 port);

    /// Writes \a bytes as the whole file.
    void setBytes(const QByteArray &bytes) const;

    /// Puts a folder where the file should be.
    void setFolderInPlace() const;

    /// The installation folder.
    [[nodiscard]] QString root() const { return m_folder.path(); }

    /// The settings file.
    [[nodiscard]] QString path() const;

    // What setServer() writes, decoded.
    static const char tenantId[];
    static const char key[];
    static const char secret[];

private:
    void write();

    QTemporaryDir m_folder;
    QMap<QString, QString> m_values;
    int m_writes = 0;
    bool m_entered = false;
};
