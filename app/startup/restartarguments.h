#pragma once

#include <string>

/// What follows the program's own name in a command line as Windows gives it to a process; empty
/// when nothing does. The name may stand in quotes.
std::wstring restartArguments(const std::wstring &commandLine);
