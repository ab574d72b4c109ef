#pragma once

#include <functional>
#include <utility>

/// Returns the heap's free memory to the system; otherwise the heap keeps most of it. For the end
/// of a change of a long list, once its source is freed. Takes some milliseconds. Each platform
/// has its own source.
void giveBackFreeMemory();

/// Does the work on a thread of its own, unless the system has no room for one. GUI thread; the end
/// of the program waits for the work.
void runAside(std::function<void()> work);

/// Frees the records of a long list, which takes longer than the window may stand still. `held`
/// must not belong to a thread. GUI thread.
template <typename Held>
void freeAside(Held held)
{
    runAside([held = std::move(held)]() mutable {
        {
            const Held freed = std::move(held);
        }
        giveBackFreeMemory();
    });
}
