#pragma once

#include <QByteArray>
#include <QString>

/// What one request is signed with. The secret never leaves the program as it is.
struct RequestCredentials
{
    QString tenantId;
    QString key;
    QString secret;
    QString nonce;
    QString timestamp; ///< ms since the Unix epoch, in decimal
};

/// Reads a credential as the configuration stores it: Base64 (RFC 4648; characters outside the
/// alphabet are skipped) of UTF-8 text that ends at its first NUL byte. Empty when nothing is left.
[[nodiscard]] QString decodedCredential(const QString &stored);

/// The canonical text that the service signs as well. The values are filled in one after the other,
/// so a value that holds a place marker such as "%3" is filled by the values that follow it.
[[nodiscard]] QString stringToSign(const RequestCredentials &credentials);

/// HMAC-SHA-256 (RFC 2104, FIPS 180-4) of \a message keyed with \a secret, both as Latin-1 bytes,
/// in lower-case hexadecimal and percent-encoded (RFC 3986): 64 characters.
[[nodiscard]] QByteArray requestSignature(const QString &message, const QString &secret);
