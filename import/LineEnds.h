#pragma once

#include <QByteArray>

/// Ends every line of a UTF-8 text with LF alone, as the CSV reader takes bytes as they are.
///
/// The first line end of the text decides. If it is a carriage return without a line feed, every
/// carriage return ends a line. Otherwise all carriage returns right before a line feed belong to
/// the line end, and the others stay where they are. The byte-order mark and zero bytes, which the
/// reader would take for the end of a field, are left out.
class LineEnds
{
public:
    /// Converts the next piece of the text; part of it may be held back.
    QByteArray made(const QByteArray &piece);
    /// Converts what was held back. To be called at the end of the text.
    QByteArray rest();
    /// True when the first line ends in a carriage return and the next two in line feeds: the
    /// carriage return is then one among the titles.
    bool isTitleBroken() const { return m_others == Others::LineFeed; }

private:
    enum class Kind { Unknown, LineFeed, CarriageReturn };

    /// What ends the later lines when the first one ends in a carriage return.
    enum class Others { Unknown, CarriageReturn, LineFeed };

    void putReturns(char next, QByteArray &text);
    void lookAtOthers(const QByteArray &piece, int place);

    Kind m_kind = Kind::Unknown;
    Others m_others = Others::Unknown;
    int m_feeds = 0;   ///< line feeds seen while m_others is unknown
    int m_returns = 0; ///< carriage returns held back until the byte after them is known
    bool m_started = false;
};
