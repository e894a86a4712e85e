#pragma once

/// Lets the doctor run where there is no screen: it shows no window. Call it before the application
/// object is made.
void showNoWindow();

/// Whether the system comes with the font that the program asks for.
[[nodiscard]] bool comesWithTheFont();

/// Lets questions whether a file may be written ask for the rights of the user.
void askForRights();
