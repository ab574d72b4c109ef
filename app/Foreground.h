#pragma once

/// Lets another program bring its window to the front, for which this one must have been started
/// by the user just now. Windows would otherwise only let that window's button in the task bar
/// blink. Each platform has its own source.
void letOthersComeToFront();
