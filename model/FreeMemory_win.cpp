#include "model/FreeMemory.h"

#include <windows.h>

void giveBackFreeMemory()
{
    HeapCompact(GetProcessHeap(), 0);
}
