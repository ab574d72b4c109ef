#pragma once

/// Hands back to the system what the program holds and does not use any more. For the end of a
/// change of a long list, once what it was made from is gone: the heap keeps most of that
/// otherwise. Takes some milliseconds. Each platform has its own source.
void giveBackFreeMemory();
