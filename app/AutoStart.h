#pragma once

#include "model/WholeFile.h"

#include <QString>

/// Starts the program with the user's session. Each platform has its own source.
namespace AutoStart {

/// Where the platform keeps the entry that starts the program: a registry key or a file.
QString place();

/// Enters the path of the executable there or, unless `on`, that nothing is to be started.
WriteResult set(const QString &programPath, bool on);

} // namespace AutoStart
