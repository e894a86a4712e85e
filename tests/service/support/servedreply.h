#pragma once

#include <QByteArray>

/// What the test server does with a request.
struct ServedReply
{
    QByteArray bytes;        ///< sent as they are, then the connection is closed
    bool hold = false;       ///< sent only after TestServer::release()
    QByteArray early = {};   ///< sent at once, before those
    QByteArray endless = {}; ///< sent over and over after those, until the client leaves
};

/// A well-formed HTTP reply (RFC 9112) with \a body as JSON.
[[nodiscard]] ServedReply httpReply(const QByteArray &body, const QByteArray &status = "200 OK");

/// A reply that announces more bytes than it sends.
[[nodiscard]] ServedReply truncatedReply(const QByteArray &body);

/// The connection is closed without a byte.
[[nodiscard]] ServedReply droppedReply();

/// The connection is closed within the headers.
[[nodiscard]] ServedReply droppedInHeaders();

/// A reply whose second half is sent when the server releases it.
[[nodiscard]] ServedReply heldInTheMiddle(const QByteArray &body);

/// \a reply, sent when the server releases it.
[[nodiscard]] ServedReply held(ServedReply reply);
