#include "import/csv_parser.h"

#include "import/InputFile.h"
#include "model/DebugLog.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char quote = '"';

bool isSeparator(char character)
{
    return character == ',' || character == '\n';
}

/// The piece without the quotes around it, and with each doubled quote inside made single.
std::string unquoted(std::string piece)
{
    if (piece.size() >= 2 && piece.front() == quote && piece.back() == quote)
        piece = piece.substr(1, piece.size() - 2);
    std::string text;
    text.reserve(piece.size());
    for (std::size_t i = 0; i < piece.size(); ++i) {
        text += piece[i];
        if (piece[i] == quote && i + 1 < piece.size() && piece[i + 1] == quote)
            ++i;
    }
    return text;
}

} // namespace

csv_parser::~csv_parser()
{
    close();
}

bool csv_parser::open_file(const char *name)
{
    close();
    if (!name || *name == '\0') {
        std::fprintf(stderr, "Fatal error : invalid input file %s\n", name ? name : "");
        return false;
    }
    m_fileName = name;
    m_stream = openInputFile(name);
    if (!m_stream) {
        std::fprintf(stderr, "Fatal error : unable to open input file %s\n", name);
        m_fileName.clear();
        return false;
    }
    return start();
}

bool csv_parser::open_stream(std::FILE *stream)
{
    close();
    if (!stream) {
        std::fputs("Fatal error : unable to open input file from file pointer\n", stderr);
        return false;
    }
    m_stream = stream;
    std::rewind(m_stream);
    return start();
}

bool csv_parser::start()
{
    m_moreRows = true;
    m_blockStart = m_blockEnd = 0;
    for (unsigned i = 0; i < m_skipLines && m_moreRows; ++i)
        _read_single_line();
    m_recordCount = 0;
    return true;
}

void csv_parser::close()
{
    if (!m_stream)
        return;
    qCDebug(debugLog) << "close file in csv_parser~~~~!!!";
    if (std::fclose(m_stream) == 0)
        qCDebug(debugLog) << "fclose input fp success.!";
    m_stream = nullptr;
    m_moreRows = false;
}

void csv_parser::set_enclosure(char character, int mode)
{
    if (character == '\0')
        return;
    m_enclosure = character;
    m_mode = mode;
}

void csv_parser::set_field_term(char character)
{
    if (character != '\0')
        m_fieldTerm = character;
}

void csv_parser::set_line_term(char character)
{
    if (character != '\0')
        m_lineTerm = character;
}

csv_row csv_parser::next_row()
{
    csv_row row;
    next_row(row);
    return row;
}

void csv_parser::next_row(csv_row &row)
{
    _read_single_line();
    ++m_recordCount;
    if (m_mode == enclosure_none)
        row = split_unenclosed();
    else if (m_mode == enclosure_mandatory)
        row = split_enclosed();
    else if (m_line.find(quote) == std::string::npos && m_line.find('\0') == std::string::npos)
        split_plain(row);
    else
        row = split_quoted();
}

/// Looks ahead after the line, so that a last line that ends with the terminator is known to be the
/// last.
void csv_parser::_read_single_line()
{
    // A trace of every line slows a long list down, so it is written only for debugging.
    if (debugLog().isDebugEnabled())
        std::fputs("_read_single_line!\n", stderr);
    m_line.clear();
    bool ended = false;
    while (!ended && fill_block()) {
        const char *const rest = m_block.data() + m_blockStart;
        const std::size_t length = m_blockEnd - m_blockStart;
        const void *const found = std::memchr(rest, m_lineTerm, length);
        ended = found != nullptr;
        const std::size_t taken =
            ended ? static_cast<std::size_t>(static_cast<const char *>(found) - rest) + 1 : length;
        m_line.append(rest, taken);
        m_blockStart += taken;
    }
    m_moreRows = fill_block();
}

/// Reads the next block of the file when this one is used up. False at the end of the file.
bool csv_parser::fill_block()
{
    if (m_blockStart == m_blockEnd && m_stream) {
        m_blockStart = 0;
        m_blockEnd = std::fread(m_block.data(), 1, m_block.size(), m_stream);
    }
    return m_blockStart != m_blockEnd;
}

/// The pieces of the line that end in a terminator.
csv_row csv_parser::split_unenclosed() const
{
    csv_row row;
    std::string piece;
    for (const char character : m_line) {
        if (character == m_fieldTerm || character == m_lineTerm) {
            row.push_back(piece);
            piece.clear();
        } else {
            piece += character;
        }
    }
    return row;
}

/// The texts between pairs of enclosure characters; the whole line when there are none.
csv_row csv_parser::split_enclosed() const
{
    csv_row row;
    std::string piece;
    bool inside = false;
    char before = '\0';
    for (const char character : m_line) {
        const bool escaped = m_escape != '\0' && before == m_escape;
        if (character == m_enclosure && !escaped) {
            if (inside)
                row.push_back(piece);
            piece.clear();
            inside = !inside;
        } else if (inside) {
            piece += character;
        }
        before = character;
    }
    if (row.empty())
        row.push_back(m_line);
    return row;
}

/// A line whose fields may be enclosed.
csv_row csv_parser::split_quoted()
{
    const std::size_t separators = end_fields();
    csv_row row;
    row.reserve(separators + 1);
    std::size_t start = 0;
    for (std::size_t i = 0; i <= separators; ++i) {
        const std::size_t end = std::min(m_line.find('\0', start), m_line.size());
        row.push_back(unquoted(m_line.substr(start, end - start)));
        start = std::min(end + 1, m_line.size());
    }
    return row;
}

/// As split_quoted(), in a fraction of the time, for a line without quotes; most lines have none.
void csv_parser::split_plain(csv_row &row) const
{
    std::size_t count = 0;
    const auto put = [&](auto start, auto end) {
        if (count == row.size())
            row.emplace_back();
        row[count++].assign(start, end);
    };
    auto start = m_line.begin();
    auto end = start;
    while ((end = std::find_if(start, m_line.end(), isSeparator)) != m_line.end()) {
        put(start, end);
        start = end + 1;
    }
    put(start, end);
    row.resize(count);
}

/// Replaces each separator by a NUL and returns their number. Doubled quotes inside a quoted field
/// change nothing: the first sets `afterQuote` and the second clears it.
std::size_t csv_parser::end_fields()
{
    bool afterQuote = false;
    bool insideQuotes = false;
    std::size_t separators = 0;
    for (char &character : m_line) {
        if (character == quote) {
            afterQuote = !afterQuote;
            continue;
        }
        if (afterQuote)
            insideQuotes = !insideQuotes;
        afterQuote = false;
        if (!insideQuotes && isSeparator(character)) {
            character = '\0';
            ++separators;
        }
    }
    return separators;
}
