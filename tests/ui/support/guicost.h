#pragma once

#include <QtGlobal>

#include <functional>

/// What this thread, the GUI thread of a test, has computed so far, in ms. A loaded machine does
/// not change it.
[[nodiscard]] qint64 threadTimeMs();

/// Runs \a action and then everything that follows from it in the event loop, and gives the longest
/// time in ms that this thread computed without handling events: of the action, or of one turn of
/// the loop after it. Turns are made until \a isDone holds, or for a few of them.
[[nodiscard]] qint64 longestStallMs(const std::function<void()> &action,
                                    const std::function<bool()> &isDone = {});

/// How many times as long as in a shipped build anything may take in this one: what the environment
/// variable MIRAVEL_TEST_SLOWNESS says, else 1. Presets without optimisation set it for their
/// tests.
[[nodiscard]] int slowness();

/// Forgets the peak of peakMemoryMb(). Where the system cannot, nothing happens.
void resetPeakMemory();

/// The most memory that this process had at a time, in MiB; 0 where the system does not tell.
[[nodiscard]] qint64 peakMemoryMb();
