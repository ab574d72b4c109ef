#pragma once

#include <QByteArray>

/// Gives every line of a UTF-8 text LF alone as its end, as the CSV reader takes bytes as they are.
///
/// The first line end of the text tells what ends its lines: a carriage return with no line feed
/// behind it means that each of them does. Otherwise those that stand before a line feed, however
/// many, belong to the line end, and the others are left where they are. The mark at the start and
/// zero bytes, which the reader would take for the end of a field, are left out.
class LineEnds
{
public:
    /// The next piece of the text; part of it may be held back.
    QByteArray made(const QByteArray &piece);
    /// What was held back, at the end of the text.
    QByteArray rest();
    /// True when the first line ends in a carriage return and the next one in a line feed. Then no
    /// one can tell whether the titles end there, or have a carriage return among them.
    bool isFirstLineDoubtful() const { return m_second == Second::LineFeed; }

private:
    enum class Kind { Unknown, LineFeed, CarriageReturn };

    /// What ends the line behind a first one that ends in a carriage return.
    enum class Second { Unknown, CarriageReturn, LineFeedAtEnd, LineFeed };

    void putReturns(char next, QByteArray &text);
    void lookAtSecond(const QByteArray &piece, int place);

    Kind m_kind = Kind::Unknown;
    Second m_second = Second::Unknown;
    int m_returns = 0; ///< carriage returns of which it is not known what follows them
    bool m_started = false;
};
