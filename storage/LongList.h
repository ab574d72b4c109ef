#pragma once

/// Whether a list of so many devices is long: a step that goes through all of it takes some
/// milliseconds, so events are handled before and after it, and the heap memory that its making
/// leaves free is worth giving back.
constexpr bool isLongList(int devices)
{
    constexpr int mostInAShortOne = 2000;
    return devices > mostInAShortOne;
}
