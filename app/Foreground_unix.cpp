#include "app/Foreground.h"

void letOthersComeToFront()
{
    // The window manager decides.
}
