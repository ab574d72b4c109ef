#pragma once

#include "net/SocketPlatform.h"

#include <mutex>

/// A listening socket, at which any number of threads may wait and accept. Any thread.
class Listener
{
public:
    /// Duplicates the listening descriptor, which stays the caller's and must not block.
    explicit Listener(std::intptr_t listening);
    ~Listener();
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    /// False when the system had no descriptor left.
    bool isUsable() const { return m_descriptor >= 0; }

    /// Accepts a connection if one waits; the new descriptor is the caller's. Refused also when the
    /// process has too few descriptors left to serve it.
    SocketPlatform::Accept accept(std::intptr_t &descriptor);

    /// True once a connection waits, or the listener was closed; false when the time is over.
    bool wait(std::chrono::milliseconds time);

    /// Ends every wait; nothing is accepted afterwards. The descriptor is closed when the last wait
    /// has ended, SocketPlatform::longestWait() later at the latest.
    void close();

private:
    class Use;
    void leave();

    const std::intptr_t m_descriptor;
    std::mutex m_mutex; ///< a leaf, for the two members below
    int m_users = 0;
    bool m_isOpen;
};
