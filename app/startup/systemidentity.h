#pragma once

/// Tells the system who this process is and how it wants to come back: the identity that the start
/// menu's shortcut has too, and a restart with the same command line after an update of the system
/// or of the program, never after a crash or a hang. Does nothing but on Windows. GUI thread,
/// before the first window.
void introduceToSystem();
