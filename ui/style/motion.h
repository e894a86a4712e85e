#pragma once

/// Whether the system wants what it shows to move. False where the user asked for no animations:
/// what would move then stands still. GUI thread only; the answer may change while the program
/// runs.
[[nodiscard]] bool motionIsWanted();
