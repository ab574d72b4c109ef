#pragma once

#include <QString>

/// "text"_s is a QString, much as u"text"_s from Qt 6.4 on.
inline QString operator""_s(const char *text, std::size_t length)
{
    return QString::fromUtf8(text, int(length));
}
