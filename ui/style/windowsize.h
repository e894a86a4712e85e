#pragma once

#include <QSize>

/// The size of the program's window, in px. It never changes.
constexpr QSize windowSize(920, 640);
