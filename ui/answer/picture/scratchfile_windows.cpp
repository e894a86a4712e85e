#include "ui/answer/picture/scratchfile.h"

#include <QDir>
#include <QRandomGenerator>

#include <windows.h>
#include <fcntl.h>
#include <io.h>
#include <sddl.h>

namespace {

/// Rights for the owner and the system alone; the folder's own rights where that cannot be said.
class OwnerOnly
{
    Q_DISABLE_COPY(OwnerOnly)

public:
    OwnerOnly()
    {
        ConvertStringSecurityDescriptorToSecurityDescriptorW(
            L"D:P(A;;FA;;;OW)(A;;FA;;;SY)", SDDL_REVISION_1, &m_rights.lpSecurityDescriptor,
            nullptr);
    }

    ~OwnerOnly() { LocalFree(m_rights.lpSecurityDescriptor); }

    [[nodiscard]] SECURITY_ATTRIBUTES *get()
    {
        return m_rights.lpSecurityDescriptor == nullptr ? nullptr : &m_rights;
    }

private:
    SECURITY_ATTRIBUTES m_rights{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

QString randomName()
{
    QString name = scratchFilePrefix;
    for (int part = 0; part < 4; ++part) {
        name += QString::number(QRandomGenerator::system()->generate(), 16);
    }
    return name;
}

} // namespace

int openScratchFile(const QString &folder)
{
    const QString path = QDir::toNativeSeparators(folder + QLatin1Char('/') + randomName());
    OwnerOnly rights;
    // Shared with nobody, made anew or not at all, deleted by the system with its last handle.
    HANDLE file = CreateFileW(reinterpret_cast<LPCWSTR>(path.utf16()), GENERIC_READ | GENERIC_WRITE,
                              0, rights.get(), CREATE_NEW,
                              FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return -1;
    }
    const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(file), _O_RDWR | _O_BINARY);
    if (descriptor < 0) {
        CloseHandle(file);
    }
    return descriptor;
}

bool isRemovableScratchFile(const QString &path)
{
    Q_UNUSED(path)
    return true; // the system refuses to remove what is open anywhere
}
