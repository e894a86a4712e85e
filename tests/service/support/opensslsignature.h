#pragma once

#include <QByteArray>

/// HMAC-SHA-256 of \a message keyed with \a secret in lower-case hexadecimal, by OpenSSL: another
/// code than the one under test.
[[nodiscard]] QByteArray opensslSignature(const QByteArray &message, const QByteArray &secret);
