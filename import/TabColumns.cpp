#include "import/TabColumns.h"

#include "import/ByteSearch.h"

#include <utility>

namespace {

QByteArray field(const QByteArray &text)
{
    if (!text.contains(',') || (text.size() > 1 && text.startsWith('"') && text.endsWith('"')))
        return text;
    return '"' + QByteArray(text).replace('"', "\"\"") + '"';
}

/// Converts a line with its line end. A tab between quotes does not separate columns.
QByteArray lineInCommas(const QByteArray &line)
{
    QByteArray result;
    result.reserve(line.size() + 8);
    bool isQuoted = false;
    int start = 0;
    for (int i = 0; i < line.size(); ++i) {
        const char byte = line.at(i);
        if (byte == '"')
            isQuoted = !isQuoted;
        if (byte == '\n' || (byte == '\t' && !isQuoted)) {
            result += field(line.mid(start, i - start));
            result += byte == '\t' ? ',' : '\n';
            start = i + 1;
        }
    }
    return result + field(line.mid(start));
}

} // namespace

QByteArray TabColumns::inCommas(const QByteArray &piece)
{
    m_openLine += piece;
    if (m_columns == Columns::Commas)
        return std::exchange(m_openLine, {});
    QByteArray text;
    int start = 0;
    for (int end = 0; (end = indexOfByte(m_openLine, '\n', start) + 1) > 0; start = end)
        text += line(m_openLine.mid(start, end - start));
    m_openLine.remove(0, start);
    return text;
}

QByteArray TabColumns::rest()
{
    return line(m_openLine);
}

QByteArray TabColumns::line(const QByteArray &bytes)
{
    if (m_columns == Columns::Unknown)
        m_columns = bytes.count('\t') > bytes.count(',') ? Columns::Tabs : Columns::Commas;
    return m_columns == Columns::Tabs ? lineInCommas(bytes) : bytes;
}
