#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QPair>
#include <QSsl>
#include <QVector>

/// One HTTP request as it came over the wire.
struct ReceivedRequest
{
    QByteArray method;
    QByteArray target;
    QVector<QPair<QByteArray, QByteArray>> headers; ///< names as written, in order
    QByteArray body;
    QSsl::SslProtocol protocol = QSsl::UnknownProtocol; ///< of a TLS connection

    /// The value of the header with exactly this \a name; null when there is none.
    [[nodiscard]] QByteArray header(const QByteArray &name) const;

    /// All header names, as written, in order.
    [[nodiscard]] QByteArrayList headerNames() const;
};

/// Reads \a bytes as an HTTP request. Returns false while it is not complete.
[[nodiscard]] bool readRequest(const QByteArray &bytes, ReceivedRequest &request);
