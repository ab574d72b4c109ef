#pragma once

#include <array>

/// A syllable without its tone, with a capital first letter, and the characters read so: the
/// escape of each, as in "\u554a", in one text.
struct PinyinPair
{
    const char *syllable;
    const char *characters;
};

/// The characters of GB 2312 by their Mandarin reading: 401 pairs sorted by syllable, the last few
/// appended, and the pair "end". A character of several pairs counts for the first of them.
extern const std::array<PinyinPair, 402> pinyinTable;
