#include "app/startup/heap.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

void giveLargeBlocksBack()
{
#ifdef __GLIBC__
    constexpr int largeBytes = 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, largeBytes); // a fixed threshold no longer grows by itself
#endif
}
