#pragma once

#include <QChar>
#include <QString>
#include <QStringList>

/// Rules for input into one segment of an address: the text and the cursor that result, and whether
/// the focus moves to a neighbour. Pure functions; IpPart applies the results.
namespace AddressSegment {

/// The content of a segment. The values are fixed.
enum Kind : int {
    Octet = 0,          ///< a number from 0 to 255, "0" at first
    FourCharacters = 1, ///< four characters of any kind
    MacByte = 2,        ///< two hexadecimal digits, "FF" at first
};

/// The most characters that a segment holds.
int maxLength(int kind);

/// The text of a segment, with its cursor and its selection.
struct State
{
    QString text;
    int cursor = 0;
    int selectionStart = 0;
    int selectionLength = 0; ///< 0 without a selection
};

/// One key press, by its effect.
struct Input
{
    enum Action { Type, Backspace, Delete, Left, Right };
    Action action = Type;
    QChar character; ///< what is typed
};

/// Where the focus moves.
enum class Move {
    Stay,
    NextSelected, ///< the next segment, all of it selected
    NextStart,    ///< the next segment, cursor before its text
    PreviousEnd,  ///< the previous segment, cursor after its text
    PreviousRest, ///< the previous segment, cursor after its second character
};

/// Why an input changed nothing. None also if there is nothing to explain.
enum class Refusal {
    None,
    NoDigit,  ///< the character is no digit of such an address
    TooLarge, ///< the octet would exceed 255
    Full,     ///< the segment has no room for a digit at the cursor
};

struct Result
{
    QString text;
    int cursor = -1; ///< -1: cursor and selection stay as they are
    Move move = Move::Stay;
    Refusal refusal = Refusal::None;
};

/// The effect of `input` on a segment. Assumes neighbours on both sides; at an end of the row, only
/// the move is left out.
Result apply(int kind, const State &before, Input input);

/// Brings a text that was changed in another way, such as by a cut or an undo, into the form of its
/// kind. Only a text that `grew` can move the focus.
Result settle(int kind, const QString &text, int cursor, bool grew);

/// The segments of a whole address in any usual notation; empty when `text` is no such address. A
/// MAC address has six pairs with ":", "-", ".", blanks or nothing between any two of them. An IPv4
/// address has four numbers up to 255, with or without a prefix length ("/24"). The pieces have the
/// form of the entry: upper-case digits, numbers without leading zeros.
QStringList piecesOfAddress(int kind, const QString &text);

/// Whether all of `text` can be typed into a row that has `segments` segments from the cursor on.
bool canBeTyped(int kind, const QString &text, int segments);

/// `text` as typed on a plain keyboard: the full-width characters of input methods become ASCII.
QString plainText(const QString &text);

/// Whether `character` separates the segments of a written address.
bool isSeparator(QChar character);

} // namespace AddressSegment
