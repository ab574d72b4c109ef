#include "model/MacAddress.h"

#include <array>

namespace {

constexpr int digitCount = 12;
constexpr int textLength = 17; ///< of an address in pairs

using Digits = std::array<QChar, digitCount>;

bool isHexDigit(QChar character)
{
    const ushort code = character.unicode();
    return (code >= '0' && code <= '9') || (code >= 'a' && code <= 'f') ||
           (code >= 'A' && code <= 'F');
}

/// Whether the address already has the form that importedMac() writes.
bool isInPairs(const QString &text)
{
    if (text.size() != textLength)
        return false;
    for (int i = 0; i < textLength; ++i) {
        if (i % 3 == 2 ? text.at(i) != QLatin1Char(':') : !isHexDigit(text.at(i)))
            return false;
    }
    return true;
}

bool isSeparator(QChar character)
{
    return character == QLatin1Char(':') || character == QLatin1Char('-') ||
           character == QLatin1Char('.') || character.isSpace();
}

/// Finds the digits of an address. False when the text is no address.
bool findDigits(const QString &text, Digits &digits)
{
    std::size_t count = 0;
    for (const QChar character : text) {
        if (isHexDigit(character)) {
            if (count == digits.size())
                return false;
            digits[count++] = character;
        } else if (!isSeparator(character)) {
            return false;
        }
    }
    return count == digits.size();
}

} // namespace

QString bareMac(const QString &mac)
{
    Digits digits;
    if (findDigits(mac, digits))
        return QString(digits.data(), digitCount).toLower();
    QString bare = mac;
    bare.remove(QLatin1Char(':'));
    return bare.toLower();
}

bool isMac(const QString &mac)
{
    Digits digits;
    return findDigits(mac, digits);
}

QString importedMac(const QString &mac)
{
    Digits digits;
    if (isInPairs(mac) || !findDigits(mac, digits))
        return mac;
    QString pairs;
    pairs.reserve(textLength);
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && i % 2 == 0)
            pairs += QLatin1Char(':');
        pairs += digits[i];
    }
    return pairs;
}
