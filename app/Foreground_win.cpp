#include "app/Foreground.h"

#include <windows.h>

void letOthersComeToFront()
{
    AllowSetForegroundWindow(ASFW_ANY);
}
