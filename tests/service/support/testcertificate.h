#pragma once

#include <QSslConfiguration>

/// A server's configuration that speaks \a protocol with a self-signed certificate (RSA, 2048 bits)
/// for another host than the test's, which nobody would trust. Made once a process.
[[nodiscard]] QSslConfiguration selfSignedServer(QSsl::SslProtocol protocol);
