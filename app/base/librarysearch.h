#pragma once

/// From now on this process takes libraries that are asked for by name from the program's folder
/// and the system's own only: not from the working directory and not from the search path, where
/// others may have put one of the same name. Call it before anything is loaded at run time. Does
/// nothing but on Windows.
void narrowLibrarySearch();
