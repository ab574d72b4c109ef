#pragma once

#include <QString>

#include <array>
#include <mutex>

/// Locks on file names: who holds a name's lock is alone with that file. A fixed number of locks
/// is shared out among all names, so two names seldom wait for each other without need.
class FileNameLocks
{
public:
    /// Waits for the lock of this name. Names that differ only in case share a lock, as they are
    /// one file on some systems. Any thread; the lock must not outlive this object.
    std::unique_lock<std::mutex> lock(const QString &fileName);

private:
    std::array<std::mutex, 64> m_mutexes;
};
