#include "view/Pinyin.h"

#include "view/PinyinTable.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace {

constexpr int pinyinReserve = 25;
constexpr int initialsReserve = 15;
constexpr int characterSize = 3;

unsigned bits(char byte, unsigned mask)
{
    return static_cast<unsigned char>(byte) & mask;
}

/// Whether `byte` starts a three-byte character. In a longer character it has one more bit set.
bool startsCharacter(char byte)
{
    return bits(byte, 0xf0) == 0xe0;
}

/// The syllable of a three-byte character; null if the table does not have it.
const char *syllableOf(const char *character)
{
    const unsigned code = (bits(character[0], 0x0f) << 12) | (bits(character[1], 0x3f) << 6) |
                          bits(character[2], 0x3f);
    std::array<char, 7> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%x", code);
    for (const PinyinPair &pair : pinyinTable) {
        if (std::strcmp(pair.characters, "end") == 0)
            break;
        if (std::strstr(pair.characters, escape.data()))
            return pair.syllable;
    }
    return nullptr;
}

} // namespace

QByteArray pinyinOf(const QByteArray &text)
{
    QByteArray pinyin;
    if (text.isEmpty())
        return pinyin;
    pinyin.reserve(pinyinReserve);
    for (int i = 0; i < text.size(); ++i) {
        if (!startsCharacter(text.at(i))) {
            pinyin += text.at(i);
            continue;
        }
        if (i + characterSize <= text.size())
            pinyin += syllableOf(text.constData() + i);
        i += characterSize - 1;
    }
    return pinyin;
}

QByteArray pinyinInitials(const QByteArray &pinyin)
{
    QByteArray initials;
    if (pinyin.isEmpty())
        return initials;
    initials.reserve(initialsReserve);
    for (const char letter : pinyin) {
        if (letter >= 'A' && letter <= 'Z')
            initials += letter;
    }
    return initials;
}
