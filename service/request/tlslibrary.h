#pragma once

/// Keeps a configuration of OpenSSL's own, which can name libraries to load and can break https,
/// out of this process. On Windows neither the folder that is built into the library nor the
/// variable OPENSSL_CONF is followed; elsewhere the configuration is the system's and stays. Loads
/// the libraries, from the program's folder, or else from the system's, but not from the search
/// path. Call it before Qt touches OpenSSL; from any thread, as
/// often as one likes.
void ignoreTlsConfiguration();
