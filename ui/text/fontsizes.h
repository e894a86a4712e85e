#pragma once

#include <QString>

/// Whether \a html asks for characters so large that hardly one fits into a bubble: Qt draws the
/// outlines of each, also where nothing of it can be seen.
[[nodiscard]] bool hasHugeFonts(const QString &html);
