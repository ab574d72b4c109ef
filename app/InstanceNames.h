#pragma once

#include <QString>

/// The names by which the copies of the program that one user starts find each other, made from the
/// instance key. Copies of another user are not found, and do not keep this user's from starting.
/// Each platform has its own source.
namespace InstanceNames {

/// The name of the shared-memory segment that marks the running copy.
QString segment(const QString &key);
/// The name of the local server on which the running copy listens.
QString server(const QString &key);

} // namespace InstanceNames
