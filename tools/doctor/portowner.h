#pragma once

#include <QString>

#include <optional>

/// A program that listens on a port.
struct PortOwner
{
    qint64 process = 0; ///< its number; 0 when the system does not tell
    QString program;    ///< its file name; empty when the system does not tell
};

/// Who listens on TCP \a port for connections from this machine; nothing when nobody does.
[[nodiscard]] std::optional<PortOwner> ownerOfPort(quint16 port);
