#pragma once

/// Lets the doctor run where there is no screen: it shows no window. Call it before the application
/// object is made.
void showNoWindow();
