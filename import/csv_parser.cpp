#include "import/csv_parser.h"

#include "import/InputFile.h"
#include "model/DebugLog.h"

#include <algorithm>

namespace {

constexpr char quote = '"';

/// A piece without the quotes around it, and with each doubled quote inside made one.
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
    _read_single_line();
    ++m_recordCount;
    switch (m_mode) {
    case enclosure_none:
        return split_unenclosed();
    case enclosure_mandatory:
        return split_enclosed();
    default:
        return split_optional();
    }
}

/// Looks one character ahead, so that a last line that ends with the terminator is known to be the
/// last.
void csv_parser::_read_single_line()
{
    // A trace of every line, which a long list is better off without where nobody reads it.
    if (debugLog().isDebugEnabled())
        std::fputs("_read_single_line!\n", stderr);
    m_line.clear();
    int character = EOF;
    while (m_stream && (character = std::fgetc(m_stream)) != EOF) {
        m_line += static_cast<char>(character);
        if (m_line.back() == m_lineTerm) {
            character = std::fgetc(m_stream);
            if (character != EOF)
                std::ungetc(character, m_stream);
            break;
        }
    }
    if (character == EOF)
        m_moreRows = false;
}

/// Every piece that ends in a terminator.
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

csv_row csv_parser::split_optional()
{
    // Marks where fields end. A pair of quotes inside a quoted field changes nothing: the first
    // sets the flag and the second clears it.
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
        const bool ends = !insideQuotes && (character == ',' || character == '\n');
        afterQuote = false;
        if (ends) {
            character = '\0';
            ++separators;
            insideQuotes = false;
        }
    }

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
