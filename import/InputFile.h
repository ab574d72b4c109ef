#pragma once

#include <cstdio>

/// Opens a file for reading its bytes as they are; null when it cannot be opened. `name` is the
/// path in UTF-8 on Windows, elsewhere the bytes that the file system has. Each platform has its
/// own source. The caller closes the stream.
std::FILE *openInputFile(const char *name);
