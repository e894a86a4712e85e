#pragma once

#include <QString>
#include <QVector>

/// One row of the table: what something of ours costs, and what its bare counterpart cost in the
/// same run.
struct Row
{
    QString id;
    QString what;
    QString against;   ///< what the bare cost is; empty where there is nothing to compare with
    QString unit;      ///< of measured and bare
    double measured;   ///< our cost
    double bare;       ///< the bare cost; 0 where there is none
    double atMost;     ///< the goal: a ratio, or our cost itself where there is no bare one;
                       ///< infinite where it is stated what is measured
    double heldTo = 0; ///< where a profile shows that the goal cannot be reached: the limit that
                       ///< holds instead; 0 elsewhere

    [[nodiscard]] double value() const { return bare > 0 ? measured / bare : measured; }
    [[nodiscard]] bool reachesGoal() const { return value() <= atMost; }
    [[nodiscard]] bool isWithin() const { return value() <= (heldTo > 0 ? heldTo : atMost); }
};

using Rows = QVector<Row>;
