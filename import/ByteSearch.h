#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstring>

/// The position of the first such byte at or after `from`, or -1. Many times as fast as
/// QByteArray::indexOf(), which in this Qt compares byte by byte.
inline int indexOfByte(const QByteArray &bytes, char byte, int from = 0)
{
    if (from >= bytes.size())
        return -1;
    const void *const found =
        std::memchr(bytes.constData() + from, byte, static_cast<std::size_t>(bytes.size() - from));
    return found ? static_cast<int>(static_cast<const char *>(found) - bytes.constData()) : -1;
}
