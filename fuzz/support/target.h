#pragma once

#include <QByteArray>

/// What each fuzz target defines: does with \a input what the program does with such bytes from
/// outside, and ends the process by check() where the outcome is not what it must be. The GUI
/// thread of an application with widgets calls it, many thousand times in one process.
void runTarget(const QByteArray &input);
