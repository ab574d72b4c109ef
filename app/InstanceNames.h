#pragma once

#include <QString>

/// Where the copies of the program that one user starts find each other, by the key of the
/// instance. Another user's copies do not stand there, and do not keep this user's from starting.
/// Each platform has its own source.
namespace InstanceNames {

/// Of the shared-memory segment that marks the running copy.
QString segment(const QString &key);
/// Of the local server on which it listens.
QString server(const QString &key);

} // namespace InstanceNames
