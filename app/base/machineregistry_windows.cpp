#include "app/base/machineregistry.h"

#include <QByteArray>

#include <windows.h>

#include <cstring>
#include <optional>

namespace {

/// One value as it lies in the registry.
struct Value
{
    DWORD type = REG_NONE;
    QByteArray bytes;
};

/// A key opened for reading only: QSettings would open it for writing, and thereby make it, if it
/// may.
class OpenKey
{
public:
    OpenKey(const QString &path, REGSAM view)
    {
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t *>(path.utf16()), 0,
                      KEY_READ | view, &m_key);
    }
    ~OpenKey()
    {
        if (m_key != nullptr) {
            RegCloseKey(m_key);
        }
    }
    OpenKey(const OpenKey &) = delete;
    OpenKey &operator=(const OpenKey &) = delete;

    [[nodiscard]] std::optional<Value> value(const QString &name) const
    {
        if (m_key == nullptr) {
            return std::nullopt;
        }
        const auto *wideName = reinterpret_cast<const wchar_t *>(name.utf16());
        Value found;
        DWORD size = 0;
        LONG result = RegQueryValueExW(m_key, wideName, nullptr, &found.type, nullptr, &size);
        // Another process may make the value longer between two calls.
        do {
            found.bytes.resize(static_cast<int>(size));
            result = RegQueryValueExW(m_key, wideName, nullptr, &found.type,
                                      reinterpret_cast<BYTE *>(found.bytes.data()), &size);
        } while (result == ERROR_MORE_DATA);
        if (result != ERROR_SUCCESS) {
            return std::nullopt;
        }
        found.bytes.truncate(static_cast<int>(size));
        return found;
    }

private:
    HKEY m_key = nullptr;
};

/// The characters up to the first NUL; whoever wrote them need not have put one.
QString textOf(const QByteArray &bytes)
{
    const int length = bytes.size() / static_cast<int>(sizeof(wchar_t));
    QString text(length, QChar());
    std::memcpy(text.data(), bytes.constData(), static_cast<size_t>(length) * sizeof(wchar_t));
    const int end = text.indexOf(QChar(u'\0'));
    return end < 0 ? text : text.left(end);
}

template <typename Number>
QString numberOf(const QByteArray &bytes)
{
    Number number = 0;
    if (bytes.size() != static_cast<int>(sizeof number)) {
        return {};
    }
    std::memcpy(&number, bytes.constData(), sizeof number);
    return QString::number(number);
}

QString shown(const Value &value)
{
    switch (value.type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
        return textOf(value.bytes);
    case REG_DWORD:
        return numberOf<qint32>(value.bytes);
    case REG_QWORD:
        return numberOf<qint64>(value.bytes);
    default:
        return {};
    }
}

} // namespace

QString machineRegistryText(const QString &key, const QString &name)
{
    for (const REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
        if (const auto value = OpenKey(key, view).value(name)) {
            return shown(*value);
        }
    }
    return {};
}
