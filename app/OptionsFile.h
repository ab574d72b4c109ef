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
/// after the first that does not keeps its default. False when there is no such file, when it may
/// not be written, or when it does not parse; `options` then keeps the defaults.
bool readOptionsFile(const QString &filePath, Options &options);

/// Writes the file anew. False when it is read-only; it is then left alone.
bool createOptionsFile(const QString &filePath, const Options &options);

/// Changes the switches of a file that is there. Where its elements are not those that
/// readOptionsFile() takes, the file is written anew. False as above.
bool updateOptionsFile(const QString &filePath, const Options &options);
