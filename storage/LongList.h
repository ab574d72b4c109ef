#pragma once

/// Whether a list of so many devices is a long one. A step that goes through all of it then takes
/// some milliseconds, so that events are handled before and after it, and what making it leaves in
/// the heap is worth giving back.
constexpr bool isLongList(int devices)
{
    constexpr int mostInAShortOne = 2000;
    return devices > mostInAShortOne;
}
