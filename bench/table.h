#pragma once

#include "bench/row.h"

/// Prints \a rows as a table on standard output.
void printTable(const Rows &rows);

/// Writes \a rows as JSON to \a path. Returns whether that went well.
[[nodiscard]] bool writeResults(const Rows &rows, const QString &path);
