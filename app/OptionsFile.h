#pragma once

#include <QString>

/// The option switches of "language/options.xml".
struct Options
{
    bool autoStart = false;
    bool recoveryData = false;
    bool autoHttpd = false;
};

/// Reads the file: its elements count only as long as they stand in the expected order, what comes
/// after the first that does not keeps its default. False when there is no such file or it does
/// not parse; `options` then keeps the defaults.
bool readOptionsFile(const QString &filePath, Options &options);
