#pragma once

/// Whether the screen blends windows with what is below them, so that translucent places of a
/// window are seen as such. Without that they are black: in some remote sessions, and on X11
/// without a compositor. GUI thread only; the answer may change while the program runs.
[[nodiscard]] bool screenIsComposited();
