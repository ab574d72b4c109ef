#pragma once

#include <QString>

#include <array>
#include <mutex>
#include <utility>

/// Locks on file names: who holds a name's lock is alone with that file. A fixed number of locks
/// is shared out among all names, so two names seldom wait for each other without need.
class FileNameLocks
{
public:
    using Lock = std::unique_lock<std::mutex>;

    /// Waits for the lock of this name. Names that differ only in case share a lock, as they are
    /// one file on some systems. Any thread; the lock must not outlive this object. A thread that
    /// has one must not ask for another.
    Lock lock(const QString &fileName) { return Lock(mutex(fileName)); }
    /// The same for two names at a time, which may be one.
    std::pair<Lock, Lock> lock(const QString &fileName, const QString &otherName);

private:
    std::mutex &mutex(const QString &fileName);

    std::array<std::mutex, 64> m_mutexes;
};
