#include "app/base/fileappend.h"

#include <QDir>
#include <QFileInfo>

#include <windows.h>

namespace {

/// With the prefix a path may be longer than 260 characters.
QString longPath(const QString &path)
{
    const QString absolute = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    const QLatin1String share("\\\\");
    return absolute.startsWith(share) ? QLatin1String("\\\\?\\UNC\\") + absolute.mid(share.size())
                                      : QLatin1String("\\\\?\\") + absolute;
}

/// Keeps other copies out while this one writes, for as long as the file is open. Windows needs
/// that as little as it grants it to a handle that may only append; Wine needs it. A copy that
/// hangs is waited for a moment only.
void lock(HANDLE file)
{
    constexpr int attempts = 20;
    OVERLAPPED farBehindTheEnd = {};
    farBehindTheEnd.OffsetHigh = 0x40000000; // no reader is hindered
    for (int i = 0; i < attempts; ++i) {
        if (LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                       &farBehindTheEnd)
                != 0
            || GetLastError() != ERROR_LOCK_VIOLATION) {
            return;
        }
        Sleep(1);
    }
}

} // namespace

bool appendToFile(const QString &path, const QByteArray &bytes)
{
    // QFile seeks and then writes: what another process writes between the two would be lost. With
    // the right to append alone the system does both in one step.
    const HANDLE file
        = CreateFileW(reinterpret_cast<const wchar_t *>(longPath(path).utf16()), FILE_APPEND_DATA,
                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    lock(file);
    DWORD written = 0;
    WriteFile(file, bytes.constData(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
    return true;
}
