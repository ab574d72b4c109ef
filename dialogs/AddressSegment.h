#pragma once

#include <QChar>
#include <QString>
#include <QStringList>

/// The rules by which one segment of an address takes what the user types: what its text becomes,
/// where its cursor stands, and whether the user goes on in a neighbour. Pure functions; IpPart
/// carries out what they say.
namespace AddressSegment {

/// What a segment holds. The numbers are fixed.
enum Kind : int {
    Octet = 0,          ///< a number from 0 to 255, "0" at first
    FourCharacters = 1, ///< four characters of any kind
    MacByte = 2,        ///< two hexadecimal digits, "FF" at first
};

/// The most characters that a segment holds.
int maxLength(int kind);

/// A text with the cursor or the selection in it.
struct State
{
    QString text;
    int cursor = 0;
    int selectionStart = 0;
    int selectionLength = 0; ///< 0 without a selection
};

/// One key, by what it does.
struct Input
{
    enum Action { Type, Backspace, Delete, Left, Right };
    Action action = Type;
    QChar character; ///< what is typed
};

/// Where the user goes on.
enum class Move {
    Stay,
    NextSelected, ///< the next segment, all of it selected
    NextStart,    ///< the next segment, in front of its text
    PreviousEnd,  ///< the segment before, behind its text
    PreviousRest, ///< the segment before, behind its second character
};

/// Why an input changed nothing. None also where there is nothing to explain.
enum class Refusal {
    None,
    NoDigit,  ///< the character is no digit of such an address
    TooLarge, ///< the octet would exceed 255
    Full,     ///< the cursor stands behind the last digit that has room
};

struct Result
{
    QString text;
    int cursor = -1; ///< -1: cursor and selection stay as they are
    Move move = Move::Stay;
    Refusal refusal = Refusal::None;
};

/// What `input` makes of a segment. The moves are those of a segment with neighbours on both sides;
/// at an end of the row the cursor stays where the result has it.
Result apply(int kind, const State &before, Input input);

/// What becomes of a text that was changed in some other way, by a cut or an undo: it is brought
/// into the form of its kind. Only a text that `grew` can move the user on.
Result settle(int kind, const QString &text, int cursor, bool grew);

/// The pieces of a whole address written in any usual way: of a MAC address six pairs with ":",
/// "-",
/// "." or blanks between any two of them, or nothing; of an IPv4 address four numbers up to 255,
/// with or without the length of its network ("/24"). As they are entered: in capitals, without
/// leading zeros. Empty when `text` is no such address.
QStringList piecesOfAddress(int kind, const QString &text);

/// Whether `text`, typed into a row with room for `segments` more, goes in to its last character.
bool canBeTyped(int kind, const QString &text, int segments);

/// `text` as it would have been typed on a plain keyboard: what input methods write in full width
/// becomes ASCII.
QString plainText(const QString &text);

/// Whether `character` parts the segments of a written address.
bool isSeparator(QChar character);

} // namespace AddressSegment
