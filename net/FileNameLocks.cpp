#include "net/FileNameLocks.h"

#include <QHash>

std::mutex &FileNameLocks::mutex(const QString &fileName)
{
    return m_mutexes[qHash(fileName.toLower()) % m_mutexes.size()];
}

std::pair<FileNameLocks::Lock, FileNameLocks::Lock> FileNameLocks::lock(const QString &fileName,
                                                                        const QString &otherName)
{
    Lock first(mutex(fileName), std::defer_lock);
    Lock second(mutex(otherName), std::defer_lock);
    if (first.mutex() == second.mutex())
        first.lock();
    else
        std::lock(first, second);
    return {std::move(first), std::move(second)};
}
