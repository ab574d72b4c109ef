#pragma once

#include <QThreadPool>

#include <utility>

/// Returns the heap's free memory to the system; otherwise the heap keeps most of it. For the end
/// of a change of a long list, once its source is freed. Takes some milliseconds. Each platform
/// has its own source.
void giveBackFreeMemory();

/// Frees the records of a long list on a thread of Qt's pool, as that takes longer than the window
/// may stand still. `held` must not belong to a thread.
template <typename Held>
void freeAside(Held held)
{
    QThreadPool::globalInstance()->start([held = std::move(held)]() mutable {
        {
            const Held freed = std::move(held);
        }
        giveBackFreeMemory();
    });
}
