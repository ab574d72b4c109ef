#pragma once

/// Lets another program bring its window to the front. This program may do so only if the user has
/// just started it. Windows would otherwise only let the task bar button of that window blink. Each
/// platform has its own source.
void letOthersComeToFront();
