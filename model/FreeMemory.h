#pragma once

#include <QThreadPool>

#include <utility>

/// Hands back to the system what the program holds and does not use any more. For the end of a
/// change of a long list, once what it was made from is gone: the heap keeps most of that
/// otherwise. Takes some milliseconds. Each platform has its own source.
void giveBackFreeMemory();

/// Frees the records of a long list on a thread of Qt's pool: it takes longer than the window may
/// stand still. `held` must not belong to a thread.
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
