#pragma once

#include "model/WholeFile.h"

#include <QString>

#include <optional>

/// The option switches of "language/options.xml". A switch without a value is not in the file: it
/// counts as off, and is written as the program was shipped with it. `recoveryData` is shipped on:
/// a lost file must not hide the list for good.
struct Options
{
    std::optional<bool> autoStart;
    std::optional<bool> recoveryData;
    std::optional<bool> autoHttpd;
};

/// Reads the file. Its elements count up to the first that is not in the expected order; later
/// switches have no value. Returns false, and no values, if the file is missing, may not be written
/// or does not parse.
bool readOptionsFile(const QString &filePath, Options &options);

/// Writes a new file.
WriteResult createOptionsFile(const QString &filePath, const Options &options);

/// Changes the switches of an existing file. If its elements are not those that readOptionsFile()
/// expects, the file is written anew.
WriteResult updateOptionsFile(const QString &filePath, const Options &options);
