#pragma once

#include <cstdio>

/// Opens a file for reading its bytes unchanged; null when it cannot be opened. `name` is the path,
/// on Windows in UTF-8, elsewhere in the bytes of the file system. The caller closes the stream.
/// Each platform has its own source.
std::FILE *openInputFile(const char *name);
