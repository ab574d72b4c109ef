#pragma once

#include <array>

/// A syllable without its tone, the first letter capital, and the characters that are read so:
/// their escapes, such as "\u554a", in one text.
struct PinyinPair
{
    const char *syllable;
    const char *characters;
};

/// The characters of GB 2312 by their Mandarin reading: 401 pairs sorted by syllable, the last few
/// appended, and the pair "end". A character in several pairs counts for the first of them.
extern const std::array<PinyinPair, 402> pinyinTable;
