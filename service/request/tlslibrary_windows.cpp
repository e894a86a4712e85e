#include "service/request/tlslibrary.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QSslSocket>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

// As OpenSSL's header has them.
using Initialise = int (*)(std::uint64_t options, const void *settings);
constexpr std::uint64_t withoutConfiguration = 0x80;

QString ownFile(const char *name)
{
    return QCoreApplication::applicationDirPath() + u'/' + QLatin1String(name);
}

/// Qt asks for the configuration when it initialises OpenSSL; whoever comes first decides.
bool initialiseWithoutConfiguration(QLibrary &library)
{
    const auto initialise = reinterpret_cast<Initialise>(library.resolve("OPENSSL_init_crypto"));
    return initialise != nullptr && initialise(withoutConfiguration, nullptr) == 1;
}

/// Takes the search path away from Qt while this lives.
class HiddenSearchPath
{
    Q_DISABLE_COPY(HiddenSearchPath)

public:
    HiddenSearchPath()
        : m_path(value())
    {
        set(std::wstring());
    }

    ~HiddenSearchPath() { set(m_path); }

private:
    static std::wstring value()
    {
        const wchar_t *path = _wgetenv(L"PATH");
        return path == nullptr ? std::wstring() : path;
    }

    static void set(const std::wstring &path) { _wputenv((L"PATH=" + path).c_str()); }

    std::wstring m_path;
};

/// Where the program's own libraries cannot be loaded, Qt tries those of every folder in the search
/// path, by their full names. It tries only once in a process.
bool prepare()
{
    QLibrary crypto(ownFile("libcrypto-3-x64.dll"));
    QLibrary ssl(ownFile("libssl-3-x64.dll"));
    if (initialiseWithoutConfiguration(crypto) && ssl.load()) {
        return true;
    }
    const HiddenSearchPath hidden;
    return QSslSocket::supportsSsl();
}

} // namespace

void ignoreTlsConfiguration()
{
    static const bool done = prepare();
    Q_UNUSED(done) // without the libraries there is no https either, which Qt says
}
