#pragma once

#include <QFile>

#include <cstdint>

/// The properties that show whether a file was changed. Not read through Qt, which has the system
/// look up the time zone each time, under one lock for all threads.
struct FileLook
{
    FileLook() = default;
    /// Of a file that is open.
    explicit FileLook(const QFile &file);
    bool operator==(const FileLook &other) const
    {
        return isThere && other.isThere && time == other.time && size == other.size;
    }

    std::int64_t time = 0; ///< of the last change, in the system's own units
    std::uintmax_t size = 0;
    bool isThere = false;
};
