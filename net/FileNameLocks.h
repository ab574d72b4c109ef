#pragma once

#include <QString>

#include <array>
#include <mutex>
#include <utility>

/// Locks on file names: the holder of a name's lock has that file to itself. A fixed number of
/// locks is shared out among all names, so two names seldom wait for each other needlessly.
class FileNameLocks
{
public:
    using Lock = std::unique_lock<std::mutex>;

    /// Waits for the lock of this name. Names that differ only in case share a lock, as they are
    /// one file on some systems. Any thread; the lock must not outlive this object. A thread that
    /// holds a lock must not ask for another.
    Lock lock(const QString &fileName) { return Lock(mutex(fileName)); }
    /// The same for two names at once, which may be equal.
    std::pair<Lock, Lock> lock(const QString &fileName, const QString &otherName);

private:
    std::mutex &mutex(const QString &fileName);

    std::array<std::mutex, 64> m_mutexes;
};
