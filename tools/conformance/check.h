#pragma once

#include "tools/doctor/finding.h"

#include <QString>
#include <QVector>

/// One thing that was asked of the service, and what came of it.
struct Check
{
    QString id; ///< stays the same from run to run, such as "hot.reply"
    Finding finding;
    qint64 tookMs = -1; ///< how long the reply took; below 0 without one
};

using Checks = QVector<Check>;

/// What one reply showed: its complaints, or \a fine when there are none.
[[nodiscard]] inline Checks checksOf(const QString &id, const Findings &complaints,
                                     const QString &fine, qint64 tookMs)
{
    Checks checks;
    for (const Finding &complaint : complaints) {
        checks.append({id, complaint, tookMs});
    }
    if (complaints.isEmpty()) {
        checks.append({id, good(fine), tookMs});
    }
    return checks;
}
