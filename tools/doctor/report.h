#pragma once

#include "tools/doctor/finding.h"

#include <QTextStream>

/// Prints findings as they come and remembers whether one of them wants mending.
class Report
{
public:
    /// Prints to \a out, which is kept open by the caller.
    explicit Report(FILE *out);

    void begin(const QString &heading);
    void add(const Findings &findings);

    /// Prints how many findings want mending; true when none does.
    [[nodiscard]] bool conclude();

private:
    QTextStream m_out;
    int m_toMend = 0;
};
