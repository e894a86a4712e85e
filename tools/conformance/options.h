#pragma once

#include <QString>
#include <QStringList>

/// What the command line asked for.
struct Options
{
    QString settingsFile;
    QString address;  ///< scheme, host and port; empty: as the settings file says
    QString question; ///< empty: the first hot question
    QString jsonFile;
    QString summaryFile;
    int waitMs = 0;
    int answers = 0;
    bool verbose = false;
};

/// Reads \a arguments, the program's name first. Ends the process for --help and, with status 2,
/// for a command line that cannot be understood.
[[nodiscard]] Options readOptions(const QStringList &arguments);
