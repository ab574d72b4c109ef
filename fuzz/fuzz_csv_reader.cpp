// Reads any bytes with the CSV reader, as the import does. The first byte chooses the mode; the
// rest is the file.
#include "fuzz/FuzzTarget.h"
#include "import/csv_parser.h"

#include <algorithm>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const int mode = 1 + data[0] % 3;
    const std::uint8_t *const begin = data + 1;
    const std::uint8_t *const end = data + size;

    // The reader closes it. It is a file, because a stream in memory cannot be empty.
    std::FILE *const stream = std::tmpfile();
    require(stream);
    require(std::fwrite(begin, 1, size - 1, stream) == size - 1);

    csv_parser reader;
    require(reader.open_stream(stream));
    reader.set_enclosure('"', mode);
    reader.set_field_term(',');
    reader.set_line_term('\n');

    unsigned rows = 0;
    std::size_t bytes = 0;
    do {
        for (const std::string &field : reader.next_row()) {
            bytes += field.size();
            if (mode == csv_parser::enclosure_optional)
                require(field.find('\0') == std::string::npos);
        }
        ++rows;
    } while (reader.more_rows());

    const auto lineEnds = static_cast<unsigned>(std::count(begin, end, '\n'));
    const bool openEnd = begin == end || end[-1] != '\n';
    require(rows == lineEnds + (openEnd ? 1 : 0));
    require(rows == reader.record_count());
    require(bytes < size);
    return 0;
}
