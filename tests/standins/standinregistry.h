#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <vector>

/// Writes into the machine's registry for a test and takes everything out again when it goes. Under
/// Wine that is the registry of the tests' own prefix; on a real Windows nothing may be written.
/// Elsewhere a key is a file of its name in the working directory.
class StandInRegistry final
{
    Q_DISABLE_COPY_MOVE(StandInRegistry)

public:
    /// Which programs see a key.
    enum class View { Bits64, Bits32 };

    StandInRegistry();
    ~StandInRegistry();

    /// Why nothing can be written here; null when it can.
    [[nodiscard]] static const char *whyNot();

    /// Sets a text value of a key below HKEY_LOCAL_MACHINE, which is made.
    void setText(const QString &key, const QString &name, const QString &text,
                 View view = View::Bits64);

    /// Sets a value of any kind; on Windows only.
    void setValue(const QString &key, const QString &name, quint32 type, const QByteArray &bytes,
                  View view = View::Bits64);

    [[nodiscard]] static bool hasKey(const QString &key, View view = View::Bits64);

private:
    std::vector<std::function<void()>> m_undo;
};
