#pragma once

#include <QString>

/// "text"_s is a QString, as from Qt 6.4 on.
inline QString operator""_s(const char *text, std::size_t length)
{
    return QString::fromUtf8(text, int(length));
}
