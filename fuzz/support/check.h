#pragma once

#include <QtGlobal>

/// Ends the process with \a rule as the reason unless it \a holds.
inline void check(bool holds, const char *rule)
{
    if (!holds) {
        qFatal("This does not hold: %s", rule);
    }
}
