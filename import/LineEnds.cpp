#include "import/LineEnds.h"

#include "import/ByteSearch.h"

QByteArray LineEnds::made(const QByteArray &piece)
{
    QByteArray text;
    text.reserve(piece.size() + m_returns);
    int place = !m_started && piece.startsWith("\xef\xbb\xbf") ? 3 : 0;
    m_started = true;
    while (place < piece.size()) {
        if (m_returns > 0 && piece.at(place) != '\r')
            putReturns(piece.at(place), text);
        if (m_kind == Kind::CarriageReturn)
            lookAtOthers(piece, place);
        const int found = indexOfByte(piece, '\r', place);
        const int end = found < 0 ? piece.size() : found;
        text.append(piece.constData() + place, end - place);
        if (m_kind == Kind::Unknown && indexOfByte(text, '\n') >= 0)
            m_kind = Kind::LineFeed;
        for (place = end; place < piece.size() && piece.at(place) == '\r'; ++place)
            ++m_returns;
    }
    if (indexOfByte(text, '\0') >= 0)
        text.replace('\0', QByteArray());
    return text;
}

QByteArray LineEnds::rest()
{
    QByteArray text;
    putReturns('\n', text);
    return text;
}

/// Writes the carriage returns that were held back, in the form that the next character requires.
void LineEnds::putReturns(char next, QByteArray &text)
{
    if (m_kind == Kind::Unknown)
        m_kind = next == '\n' ? Kind::LineFeed : Kind::CarriageReturn;
    if (m_kind == Kind::CarriageReturn)
        text.append(m_returns, '\n');
    else if (next != '\n')
        text.append(m_returns, '\r');
    m_returns = 0;
}

void LineEnds::lookAtOthers(const QByteArray &piece, int place)
{
    if (m_others != Others::Unknown)
        return;
    const int found = indexOfByte(piece, '\r', place);
    const int end = found < 0 ? piece.size() : found;
    for (int feed = indexOfByte(piece, '\n', place); feed >= 0 && feed < end;
         feed = indexOfByte(piece, '\n', feed + 1)) {
        if (++m_feeds == 2) {
            m_others = Others::LineFeed;
            return;
        }
    }
    if (found >= 0)
        m_others = Others::CarriageReturn;
}
