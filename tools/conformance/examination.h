#pragma once

#include "tools/conformance/check.h"

#include <QByteArray>
#include <QDateTime>

/// The whole of what one run found out. Holds no secret.
struct Examination
{
    QString address;
    QString tenant;
    QDateTime started; ///< UTC, as the next one
    QDateTime ended;
    Checks checks;

    [[nodiscard]] int countOf(Finding::Grade grade) const;

    /// Whether there is nothing to mend.
    [[nodiscard]] bool conforms() const { return countOf(Finding::Grade::Mend) == 0; }
};

/// One JSON object: "address", "tenant", "started", "ended", "conforms", "counts" and "checks", a
/// list of "id", "grade" ("good", "note" or "mend"), "what", "mend" and "tookMs" (null without).
[[nodiscard]] QByteArray examinationAsJson(const Examination &examination);

/// A page for the files: the verdict, what to mend, what was noted, how long each call took, and
/// the names of all checks.
[[nodiscard]] QString examinationAsSummary(const Examination &examination);
