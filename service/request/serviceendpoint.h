#pragma once

#include <QString>

/// Where the question service is reached.
struct ServiceEndpoint
{
    QString strAddr; ///< host name or IP address text
    QString strPort; ///< port as text; not checked for being a number

    /// Whether both halves are there.
    [[nodiscard]] bool isComplete() const { return !strAddr.isEmpty() && !strPort.isEmpty(); }
};

/// A copy of the process-wide resolved endpoint: empty until the first resolution has ended and
/// while one is under way. Any thread, at any time, also while the process winds up.
[[nodiscard]] ServiceEndpoint resolvedEndpoint();

/// Replaces the process-wide resolved endpoint, both halves at once, so that no reader ever sees
/// the address of one resolution with the port of another. Any thread.
void setResolvedEndpoint(ServiceEndpoint endpoint);
