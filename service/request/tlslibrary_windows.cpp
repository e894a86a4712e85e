#include "service/request/tlslibrary.h"

#include <QCoreApplication>
#include <QLibrary>

#include <cstdint>

namespace {

// As OpenSSL's header has them.
using Initialise = int (*)(std::uint64_t options, const void *settings);
constexpr std::uint64_t withoutConfiguration = 0x80;

/// Qt asks for the configuration when it initialises OpenSSL; whoever comes first decides.
bool initialiseWithoutConfiguration()
{
    QLibrary library(QCoreApplication::applicationDirPath()
                     + QLatin1String("/libcrypto-3-x64.dll"));
    const auto initialise = reinterpret_cast<Initialise>(library.resolve("OPENSSL_init_crypto"));
    return initialise != nullptr && initialise(withoutConfiguration, nullptr) == 1;
}

} // namespace

void ignoreTlsConfiguration()
{
    static const bool done = initialiseWithoutConfiguration();
    Q_UNUSED(done) // without the library there is no https either, which Qt says
}
