#include "net/FileNameLocks.h"

#include <QHash>

#include <QHash>

std::unique_lock<std::mutex> FileNameLocks::lock(const QString &fileName)
{
    const std::size_t stripe = qHash(fileName.toLower()) % m_mutexes.size();
    return std::unique_lock<std::mutex>(m_mutexes[stripe]);
}
