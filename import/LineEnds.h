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
    /// True when the first line ends in a carriage return and the next two in line feeds: then the
    /// titles have a carriage return among them.
    bool isTitleBroken() const { return m_others == Others::LineFeed; }

private:
    enum class Kind { Unknown, LineFeed, CarriageReturn };

    /// What ends the lines behind a first one that ends in a carriage return.
    enum class Others { Unknown, CarriageReturn, LineFeed };

    void putReturns(char next, QByteArray &text);
    void lookAtOthers(const QByteArray &piece, int place);

    Kind m_kind = Kind::Unknown;
    Others m_others = Others::Unknown;
    int m_feeds = 0;   ///< line feeds, while that is unknown
    int m_returns = 0; ///< carriage returns of which it is not known what follows them
    bool m_started = false;
};
