#include "app/Foreground.h"

void letOthersComeToFront()
{
    // Left to the window manager.
}
