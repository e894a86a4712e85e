#include "app/base/librarysearch.h"

void narrowLibrarySearch()
{
}
