#include "dialogs/AddressSegment.h"

#include <QRegularExpression>

#include <algorithm>

namespace AddressSegment {

namespace {

constexpr int macByteLength = 2;
constexpr int octetLength = 3;
constexpr int fourCharacters = 4;
constexpr int greatestOctet = 255;
// The greatest value that a third digit can still follow.
constexpr int greatestOpenOctet = 25;

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

bool isHexDigit(QChar c)
{
    return isDigit(c) || (c >= QLatin1Char('a') && c <= QLatin1Char('f')) ||
           (c >= QLatin1Char('A') && c <= QLatin1Char('F'));
}

/// A full stop or what other keyboards have in its place: the keypad's comma, the ideographic stop.
bool isStop(QChar c)
{
    return c == QLatin1Char('.') || c == QLatin1Char(',') || c == QChar(0x3002);
}

Result unchanged(const State &state, Refusal refusal)
{
    return {state.text, -1, Move::Stay, refusal};
}

Result walk(const State &state, Move move)
{
    return {state.text, -1, move};
}

State withoutSelection(const State &before)
{
    if (before.selectionLength == 0)
        return before;
    State after = before;
    after.text.remove(before.selectionStart, before.selectionLength);
    after.cursor = before.selectionStart;
    after.selectionLength = 0;
    return after;
}

Result settleOctet(const QString &text, int cursor, bool grew)
{
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (text.size() < 2 || !isNumber)
        return {text, cursor};
    const QString plain = QString::number(value);
    const bool full = text.size() == octetLength || value > greatestOpenOctet;
    return {plain, std::max(cursor - (text.size() - plain.size()), 0),
            grew && full ? Move::NextSelected : Move::Stay};
}

/// Fills up a single digit with "F" at the cursor.
Result settleMacByte(const QString &text, int cursor)
{
    const QString digits = text.toUpper();
    if (digits.size() != 1)
        return {digits, cursor};
    return {cursor == 0 ? QLatin1Char('F') + digits : digits + QLatin1Char('F'), cursor};
}

Result typeOctet(const State &before, QChar character)
{
    if (!isDigit(character))
        return unchanged(before, Refusal::NoDigit);
    State after = withoutSelection(before);
    after.text.insert(after.cursor, character);
    if (after.text.size() > octetLength)
        return unchanged(before, Refusal::Full);
    if (after.text.toInt() > greatestOctet)
        return unchanged(before, Refusal::TooLarge);
    return settleOctet(after.text, after.cursor + 1, true);
}

Result typeMacByte(const State &before, QChar character)
{
    if (!isHexDigit(character))
        return unchanged(before, Refusal::NoDigit);
    State after = withoutSelection(before);
    if (after.text.size() < macByteLength)
        after.text.insert(after.cursor, character);
    else if (after.cursor < macByteLength)
        after.text.replace(after.cursor, 1, character);
    else
        return unchanged(before, Refusal::Full);
    Result result = settleMacByte(after.text, after.cursor + 1);
    if (result.cursor == macByteLength)
        result.move = Move::NextStart;
    return result;
}

Result typeAnything(const State &before, QChar character)
{
    State after = withoutSelection(before);
    after.text.insert(after.cursor, character);
    return settle(FourCharacters, after.text, after.cursor + 1, true);
}

Result type(int kind, const State &before, QChar character)
{
    if (isStop(character)) {
        if (before.text.isEmpty() || before.selectionLength > 0)
            return walk(before, Move::Stay);
        return walk(before, kind == MacByte ? Move::NextStart : Move::NextSelected);
    }
    if (kind == FourCharacters)
        return typeAnything(before, character);
    // A typed separator changes nothing: the digits before it have already moved the focus.
    if (isSeparator(character))
        return walk(before, Move::Stay);
    return kind == Octet ? typeOctet(before, character) : typeMacByte(before, character);
}

Result remove(int kind, const State &before, Input::Action action)
{
    if (before.text.isEmpty() && action == Input::Backspace)
        return walk(before, Move::PreviousRest);
    State after = withoutSelection(before);
    if (before.selectionLength == 0) {
        if (action == Input::Backspace)
            --after.cursor;
        if (after.cursor < 0 || after.cursor >= after.text.size())
            return walk(before, Move::Stay);
        after.text.remove(after.cursor, 1);
    }
    return settle(kind, after.text, after.cursor, false);
}

} // namespace

int maxLength(int kind)
{
    if (kind == MacByte)
        return macByteLength;
    return kind == Octet ? octetLength : 0x7FFF;
}

Result settle(int kind, const QString &text, int cursor, bool grew)
{
    if (kind == Octet)
        return settleOctet(text, cursor, grew);
    if (kind == MacByte)
        return settleMacByte(text, cursor);
    return {text, cursor, grew && text.size() >= fourCharacters ? Move::NextSelected : Move::Stay};
}

Result apply(int kind, const State &before, Input input)
{
    switch (input.action) {
    case Input::Type:
        return type(kind, before, input.character);
    case Input::Backspace:
    case Input::Delete:
        return remove(kind, before, input.action);
    case Input::Left:
        return walk(before, before.cursor == 0 ? Move::PreviousEnd : Move::Stay);
    case Input::Right:
        return walk(before, before.cursor == before.text.size() ? Move::NextStart : Move::Stay);
    }
    return walk(before, Move::Stay);
}

QStringList piecesOfAddress(int kind, const QString &text)
{
    static const QRegularExpression mac(
        QStringLiteral("\\A[0-9A-F]{2}(?:[:.\\s-]*[0-9A-F]{2}){5}\\z"));
    static const QRegularExpression ip(
        QStringLiteral("\\A[0-9]{1,3}(?:\\s*[.\\s]\\s*[0-9]{1,3}){3}(?:\\s*/\\s*[0-9]{1,2})?\\z"));
    static const QRegularExpression digits(QStringLiteral("[0-9A-F]{2}"));
    static const QRegularExpression number(QStringLiteral("[0-9]+"));

    const QString address = plainText(text).trimmed().toUpper();
    const bool isMac = kind == MacByte;
    if (kind == FourCharacters || !(isMac ? mac : ip).match(address).hasMatch())
        return {};
    QStringList pieces;
    const QString withoutLength = address.section(QLatin1Char('/'), 0, 0);
    auto match = (isMac ? digits : number).globalMatch(withoutLength);
    while (match.hasNext()) {
        const QString piece = match.next().captured();
        pieces.append(isMac ? piece : QString::number(piece.toInt()));
    }
    const bool inRange =
        isMac || std::all_of(pieces.begin(), pieces.end(),
                             [](const QString &piece) { return piece.toInt() <= greatestOctet; });
    return inRange ? pieces : QStringList();
}

bool canBeTyped(int kind, const QString &text, int segments)
{
    static const QRegularExpression separators(QStringLiteral("[:.,\\s-]+"));
    if (kind == FourCharacters)
        return true;
    const QStringList pieces = text.split(separators, Qt::SkipEmptyParts);
    const QString digits = pieces.join(QString());
    if (kind == MacByte)
        return digits.size() <= segments * macByteLength &&
               std::all_of(digits.begin(), digits.end(), isHexDigit);
    return pieces.size() <= segments && std::all_of(digits.begin(), digits.end(), isDigit) &&
           std::all_of(pieces.begin(), pieces.end(), [](const QString &piece) {
               return piece.size() <= octetLength && piece.toInt() <= greatestOctet;
           });
}

QString plainText(const QString &text)
{
    QString plain = text.normalized(QString::NormalizationForm_KC);
    return plain.replace(QChar(0x3002), QLatin1Char('.'));
}

bool isSeparator(QChar character)
{
    return isStop(character) || character == QLatin1Char(':') || character == QLatin1Char('-') ||
           character.isSpace();
}

} // namespace AddressSegment
