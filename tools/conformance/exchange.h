#pragma once

#include "tools/conformance/letter.h"

#include <QByteArray>
#include <QString>

/// What came back for a letter.
struct Response
{
    int status = 0;  ///< of HTTP; 0 when none came
    QByteArray body; ///< as far as it came
    QString error;   ///< the network's own word for what went wrong; empty for nothing
    bool inTime = true;
    qint64 tookMs = 0;
};

/// Sends \a letter to \a address (scheme, host and port), on a connection of its own as the program
/// does, and waits \a limitMs at most for the whole response. Runs an event loop meanwhile.
[[nodiscard]] Response exchange(const QString &address, const Letter &letter, int limitMs);
