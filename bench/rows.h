#pragma once

#include "bench/row.h"

// The measurements, each a file of its own. All run on the GUI thread of the benchmark.

/// From the start of the program to its first picture, by the clock and by the processor time of
/// all threads, and its memory when idle; all against a bare window.
[[nodiscard]] Rows measureStart();

/// One signed request and its reply against the same POST without us.
[[nodiscard]] Rows measureRequest();

/// Appending to a long conversation against a short one, and what an exchange takes in memory.
[[nodiscard]] Rows measureConversation();

/// An answer with fifty large pictures, until the last is there, against reading and scaling them,
/// and what a thousand answers with one each take in memory.
[[nodiscard]] Rows measurePictures();

/// The longest time in which the GUI thread handles no event, for each thing that a user does.
[[nodiscard]] Rows measureStalls();

/// A message over the guard channel and its acknowledgement against a bare echo server.
[[nodiscard]] Rows measureGuard();

/// A written log line against the bare file operations, and a dropped one.
[[nodiscard]] Rows measureLog();
