#include "tests/soak/ownhandles.h"

#include <QLibrary>
#include <qt_windows.h>

namespace {

/// An entry of the table of GDI objects that Windows maps into every process, and Wine too.
struct GdiEntry
{
    quint64 object;
    quint16 process;
    quint16 uses;
    quint16 generation;
    quint8 type;
    quint8 flags;
    quint64 user;
};

constexpr int gdiEntries = 65536;
constexpr std::ptrdiff_t tableInPeb = 0xf8; // of 64-bit processes

/// Wine 8 has no answer for GetGuiResources, but keeps the table, with this process's objects.
DWORD countedGdiObjects()
{
    using ThisPeb = const char *(WINAPI *)();
    const auto thisPeb
        = reinterpret_cast<ThisPeb>(QLibrary::resolve(QStringLiteral("ntdll"), "RtlGetCurrentPeb"));
    if (thisPeb == nullptr) {
        return 0;
    }
    const auto *table = *reinterpret_cast<const GdiEntry *const *>(thisPeb() + tableInPeb);
    DWORD count = 0;
    for (int index = 0; table != nullptr && index < gdiEntries; ++index) {
        count += table[index].type != 0 ? 1 : 0;
    }
    return count;
}

/// Nor has it one for GetProcessHandleCount.
DWORD countedHandles()
{
    constexpr quintptr step = 4;
    constexpr int most = 4096; // many times what the program has
    DWORD count = 0;
    for (int index = 1; index <= most; ++index) {
        DWORD flags = 0;
        const auto handle = reinterpret_cast<HANDLE>(static_cast<quintptr>(index) * step);
        count += GetHandleInformation(handle, &flags) != 0 ? 1 : 0;
    }
    return count;
}

} // namespace

QString ownHandles()
{
    const HANDLE process = GetCurrentProcess();
    DWORD handles = 0;
    if (GetProcessHandleCount(process, &handles) == 0 || handles == 0) {
        handles = countedHandles();
    }
    const DWORD told = GetGuiResources(process, GR_GDIOBJECTS);
    return QStringLiteral("handles %1, GDI objects %2, user objects %3")
        .arg(handles)
        .arg(told > 0 ? told : countedGdiObjects())
        .arg(GetGuiResources(process, GR_USEROBJECTS));
}
