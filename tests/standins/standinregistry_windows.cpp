#include "tests/standins/standinregistry.h"

#include <windows.h>

namespace {

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

REGSAM rights(StandInRegistry::View view)
{
    return static_cast<REGSAM>(view == StandInRegistry::View::Bits64 ? KEY_WOW64_64KEY
                                                                     : KEY_WOW64_32KEY);
}

/// The uppermost key on the way to \a key that is not there; empty when all are.
QString firstMissing(const QString &key, StandInRegistry::View view)
{
    for (int end = key.indexOf(u'\\'); end >= 0; end = key.indexOf(u'\\', end + 1)) {
        if (!StandInRegistry::hasKey(key.left(end), view)) {
            return key.left(end);
        }
    }
    return StandInRegistry::hasKey(key, view) ? QString() : key;
}

void removeTree(const QString &key, StandInRegistry::View view)
{
    HKEY open = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, wide(key), 0, KEY_ALL_ACCESS | rights(view), &open)
        == 0) {
        RegDeleteTreeW(open, nullptr);
        RegCloseKey(open);
        RegDeleteKeyExW(HKEY_LOCAL_MACHINE, wide(key), rights(view), 0);
    }
}

} // namespace

StandInRegistry::StandInRegistry()
{
    if (whyNot() != nullptr) {
        qFatal("the registry of a real machine is not written");
    }
}

StandInRegistry::~StandInRegistry()
{
    for (auto undo = m_undo.rbegin(); undo != m_undo.rend(); ++undo) {
        (*undo)();
    }
}

const char *StandInRegistry::whyNot()
{
    const bool isWine
        = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    return isWine ? nullptr
                  : "the registry belongs to the whole machine, where a test must not write";
}

void StandInRegistry::setText(const QString &key, const QString &name, const QString &text,
                              View view)
{
    const auto bytes = static_cast<int>((static_cast<size_t>(text.size()) + 1) * sizeof(wchar_t));
    setValue(key, name, REG_SZ, QByteArray(reinterpret_cast<const char *>(text.utf16()), bytes),
             view);
}

void StandInRegistry::setValue(const QString &key, const QString &name, quint32 type,
                               const QByteArray &bytes, View view)
{
    const QString made = firstMissing(key, view);
    HKEY open = nullptr;
    const LONG opened = RegCreateKeyExW(HKEY_LOCAL_MACHINE, wide(key), 0, nullptr, 0,
                                        KEY_ALL_ACCESS | rights(view), nullptr, &open, nullptr);
    if (opened != ERROR_SUCCESS
        || RegSetValueExW(open, wide(name), 0, type,
                          reinterpret_cast<const BYTE *>(bytes.constData()),
                          static_cast<DWORD>(bytes.size()))
               != ERROR_SUCCESS) {
        qFatal("cannot write into the registry");
    }
    RegCloseKey(open);
    if (!made.isEmpty()) {
        m_undo.emplace_back([made, view] { removeTree(made, view); });
    }
}

bool StandInRegistry::hasKey(const QString &key, View view)
{
    HKEY open = nullptr;
    const bool found
        = RegOpenKeyExW(HKEY_LOCAL_MACHINE, wide(key), 0, KEY_READ | rights(view), &open) == 0;
    if (found) {
        RegCloseKey(open);
    }
    return found;
}
