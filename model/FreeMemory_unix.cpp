#include "model/FreeMemory.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

void giveBackFreeMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}
