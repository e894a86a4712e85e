#pragma once

/// Holds back the work of other threads while the program makes its window's first picture: until
/// then they would only take processor time from it. Open unless somebody closes it, and whoever
/// waits at it goes on after a second at the latest. Any thread may use any operation.
namespace startgate {

void close();

/// Lets everybody through who waits, and whoever comes later.
void open();

/// Waits until it is open.
void pass();

} // namespace startgate
