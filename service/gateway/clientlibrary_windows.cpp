#include "service/gateway/clientlibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <windows.h>

namespace {

/// Keeps the system from showing a window about a library that it cannot load.
class QuietErrors
{
public:
    QuietErrors()
    {
        SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &m_before);
    }
    ~QuietErrors() { SetThreadErrorMode(m_before, nullptr); }
    QuietErrors(const QuietErrors &) = delete;
    QuietErrors &operator=(const QuietErrors &) = delete;

private:
    DWORD m_before = 0;
};

QString folderFrom(UINT(WINAPI *ask)(wchar_t *, UINT))
{
    wchar_t path[MAX_PATH];
    const UINT length = ask(path, MAX_PATH);
    return length < MAX_PATH ? QString::fromWCharArray(path, static_cast<int>(length)) : QString();
}

QString reasonOf(DWORD error)
{
    return qt_error_string(static_cast<int>(error)).trimmed() + QStringLiteral(" (%1)").arg(error);
}

} // namespace

bool ClientLibrary::loadFile()
{
    if (!QDir::isAbsolutePath(m_file)) {
        return false;
    }
    const QuietErrors quiet;
    const QString path = QDir::toNativeSeparators(m_file);
    m_handle = LoadLibraryExW(reinterpret_cast<const wchar_t *>(path.utf16()), nullptr,
                              LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    if (m_handle == nullptr) {
        m_reason = reasonOf(GetLastError());
    }
    return m_handle != nullptr;
}

QFunctionPointer ClientLibrary::resolve(const char *name) const
{
    return m_handle == nullptr ? nullptr
                               : reinterpret_cast<QFunctionPointer>(
                                   GetProcAddress(static_cast<HMODULE>(m_handle), name));
}

void ClientLibrary::unload()
{
    if (m_handle != nullptr) {
        FreeLibrary(static_cast<HMODULE>(m_handle));
        m_handle = nullptr;
    }
}

QStringList ClientLibrary::places(const QString &name)
{
    QStringList folders{QCoreApplication::applicationDirPath(), folderFrom(GetSystemDirectoryW),
                        folderFrom(GetWindowsDirectoryW)};
    for (QString folder : qEnvironmentVariable("PATH").split(u';', Qt::SkipEmptyParts)) {
        folders.append(folder.remove(u'"'));
    }
    QStringList found;
    for (const QString &folder : qAsConst(folders)) {
        const QString file = folder + QLatin1Char('/') + name + QStringLiteral(".dll");
        if (QDir::isAbsolutePath(folder) && QFileInfo(file).isFile()) {
            found.append(QDir::cleanPath(file));
        }
    }
    found.removeDuplicates();
    return found;
}
