#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

/// The fields of one line, as the bytes that they are in the file.
using csv_row = std::vector<std::string>;

/// Reads a file of comma-separated values line by line. Knows bytes only: what they mean is the
/// caller's business. Lines and fields may be of any length. Not for use from several threads.
class csv_parser
{
public:
    /// How fields are enclosed; any other value behaves as optional.
    enum enclosure_mode {
        enclosure_none = 1,
        enclosure_mandatory = 2,
        enclosure_optional = 3,
    };

    csv_parser() = default;
    /// Closes the stream.
    ~csv_parser();
    csv_parser(const csv_parser &) = delete;
    csv_parser &operator=(const csv_parser &) = delete;

    /// Opens the file, named as openInputFile() takes it, and makes the first row ready. Why it
    /// failed goes to standard error.
    bool open_file(const char *name);
    /// Reads an open stream from its start; the reader owns it from here on, also on failure.
    /// Part of the interface; nothing here calls it.
    bool open_stream(std::FILE *stream);

    /// Each does nothing when the character is the zero byte. In optional mode the separators are
    /// the comma and LF, whatever is set.
    void set_enclosure(char character, int mode);
    void set_field_term(char character);
    void set_line_term(char character);
    /// Only for mandatory mode: an enclosure character behind this one does not count.
    /// Part of the interface; nothing here calls it.
    void set_escape(char character) { m_escape = character; }
    /// Lines to pass over when a file is opened.
    /// Part of the interface; nothing here calls it.
    void set_skip_lines(unsigned count) { m_skipLines = count; }

    /// Whether next_row() has something left to read.
    bool more_rows() const { return m_moreRows; }
    /// Reads the next line. As a line keeps its terminator, a row that has one carries an empty
    /// field more behind the last.
    csv_row next_row();
    /// The same into a row that exists, whose memory is used again.
    void next_row(csv_row &row);
    /// Rows read since the file was opened.
    /// Part of the interface; nothing here calls it.
    unsigned record_count() const { return m_recordCount; }

private:
    bool start();
    void close();
    void _read_single_line();
    bool fill_block();
    csv_row split_unenclosed() const;
    csv_row split_enclosed() const;
    csv_row split_quoted();
    void split_plain(csv_row &row) const;
    std::size_t end_fields();

    char m_enclosure = '"';
    char m_escape = '\0';
    char m_fieldTerm = ',';
    char m_lineTerm = '\n';
    unsigned m_skipLines = 0;
    unsigned m_recordCount = 0;
    std::FILE *m_stream = nullptr;
    std::string m_fileName;
    int m_mode = enclosure_optional;
    bool m_moreRows = false;
    std::array<char, 16384> m_block; ///< read from the file at once
    std::size_t m_blockStart = 0;    ///< what is left of it
    std::size_t m_blockEnd = 0;
    std::string m_line; ///< the line being split, with its terminator
};
