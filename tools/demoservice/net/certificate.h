#pragma once

#include <openssl/ssl.h>

#include <string>

namespace demo {

/// Makes an elliptic-curve key and a certificate for 127.0.0.1 and localhost signed with it, valid
/// for a year, and gives both to `context`. Nothing is written to disk. False if OpenSSL fails.
bool useSelfSignedCertificate(SSL_CTX &context);

/// Gives a certificate chain and its private key, both PEM files, to `context`. False if one cannot
/// be read or they do not belong together.
bool useCertificateFiles(SSL_CTX &context, const std::string &chainFile,
                         const std::string &keyFile);

} // namespace demo
