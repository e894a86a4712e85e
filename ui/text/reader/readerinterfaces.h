#pragma once

/// Tells Qt how groups, their parts and plain windows meet a screen reader. May be called any
/// number of times, before the first of them is shown.
void installReaderInterfaces();
