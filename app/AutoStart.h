#pragma once

#include "model/WholeFile.h"

#include <QString>

/// Starting with the user's session. Each platform has its own source.
namespace AutoStart {

/// Where the platform keeps what this user's session starts: a registry key, or a file.
QString place();

/// Enters the program there, by the path of its executable, or enters that nothing is to be
/// started.
WriteResult set(const QString &programPath, bool on);

} // namespace AutoStart
