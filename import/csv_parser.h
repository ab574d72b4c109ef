#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

/// The fields of one line, in the bytes of the file.
using csv_row = std::vector<std::string>;

/// Reads a file of comma-separated values line by line. Handles bytes only; the caller decodes
/// them. Lines and fields may be of any length. One thread at a time.
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

    /// Opens the file, named as openInputFile() takes it, and passes over the lines to skip. A
    /// failure is reported to standard error.
    bool open_file(const char *name);
    /// Reads an open stream from its start. The reader owns the stream from here on.
    /// Part of the interface; nothing here calls it.
    bool open_stream(std::FILE *stream);

    /// Each of these does nothing when the character is the zero byte. In optional mode the
    /// separators are always the comma and LF.
    void set_enclosure(char character, int mode);
    void set_field_term(char character);
    void set_line_term(char character);
    /// Only for mandatory mode: an enclosure character right after this one does not count.
    /// Part of the interface; nothing here calls it.
    void set_escape(char character) { m_escape = character; }
    /// Lines to pass over when a file is opened.
    /// Part of the interface; nothing here calls it.
    void set_skip_lines(unsigned count) { m_skipLines = count; }

    /// Whether next_row() has something left to read.
    bool more_rows() const { return m_moreRows; }
    /// Reads the next line. In optional mode an LF at the line's end adds an empty field after the
    /// last one.
    csv_row next_row();
    /// The same into an existing row, whose memory is reused.
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
    std::array<char, 16384> m_block; ///< read from the file in one call
    std::size_t m_blockStart = 0;    ///< the part not used yet: from here to m_blockEnd
    std::size_t m_blockEnd = 0;
    std::string m_line; ///< the line being split, with its terminator
};
