#include "app/base/librarysearch.h"

#include <windows.h>

void narrowLibrarySearch()
{
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    SetDllDirectoryW(L""); // for calls that ask for the old order all the same
}
