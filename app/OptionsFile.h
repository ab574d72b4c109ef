#pragma once

#include "model/WholeFile.h"

#include <QString>

#include <optional>

/// The option switches of "language/options.xml". One without a value is not in the file: it counts
/// as off, and is written as the program was shipped with it, which for the recovery of the data is
/// on: a list must not stay out of sight for good because a file was lost.
struct Options
{
    std::optional<bool> autoStart;
    std::optional<bool> recoveryData;
    std::optional<bool> autoHttpd;
};

/// Reads the file: its elements count only as long as they stand in the expected order, what comes
/// after the first that does not gets no value. False when there is no such file, when it may not
/// be written, or when it does not parse; no switch has a value then.
bool readOptionsFile(const QString &filePath, Options &options);

/// Writes the file anew.
WriteResult createOptionsFile(const QString &filePath, const Options &options);

/// Changes the switches of a file that is there. Where its elements are not those that
/// readOptionsFile() takes, the file is written anew.
WriteResult updateOptionsFile(const QString &filePath, const Options &options);
