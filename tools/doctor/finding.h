#pragma once

#include <QString>
#include <QVector>

/// One thing that the doctor has looked at.
struct Finding
{
    enum class Grade {
        Good,
        Note, ///< worth knowing; the program works all the same
        Mend, ///< something for the administrator to do
    };

    Grade grade;
    QString what; ///< what was found
    QString mend; ///< what to do about it; empty for a good one
};

using Findings = QVector<Finding>;

[[nodiscard]] inline Finding good(const QString &what)
{
    return {Finding::Grade::Good, what, {}};
}

[[nodiscard]] inline Finding note(const QString &what, const QString &mend)
{
    return {Finding::Grade::Note, what, mend};
}

[[nodiscard]] inline Finding toMend(const QString &what, const QString &mend)
{
    return {Finding::Grade::Mend, what, mend};
}
