#pragma once

#include <QString>
#include <QVector>

/// One row of the table: what something of ours costs, and what its bare counterpart cost in the
/// same run.
struct Row
{
    QString id;
    QString what;
    QString against; ///< what the bare cost is; empty where there is nothing to compare with
    QString unit;    ///< of measured and bare
    double measured; ///< our cost
    double bare;     ///< the bare cost; 0 where there is none
    double atMost;   ///< what is allowed: a ratio, or our cost itself where there is no bare one;
                     ///< infinite where it is stated what is measured

    [[nodiscard]] double value() const { return bare > 0 ? measured / bare : measured; }
    [[nodiscard]] bool isWithin() const { return value() <= atMost; }
};

using Rows = QVector<Row>;
