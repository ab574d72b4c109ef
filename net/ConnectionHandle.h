#pragma once

#include <cstdint>
#include <mutex>

/// The second descriptor of a thread's connection, by which it can be broken off from another
/// thread. One connection after the other.
///
/// The socket's own descriptor will not do: the socket may close it at any moment, and its number
/// may by then belong to somebody else. This one stays valid until finish().
class ConnectionHandle
{
public:
    ConnectionHandle() = default;
    /// Closes the handle if that has not been done yet.
    ~ConnectionHandle();
    ConnectionHandle(const ConnectionHandle &) = delete;
    ConnectionHandle &operator=(const ConnectionHandle &) = delete;

    /// Duplicates the descriptor, which stays the caller's. False when no second descriptor is to
    /// be had. The connection's own thread, as finish().
    bool open(std::intptr_t descriptor);

    /// True when something waits to be read. Any thread; false before open() and after finish().
    bool hasInput() const;

    /// Ends the connection in both directions. Any thread; nothing before open() and after
    /// finish().
    void breakOff();

    /// Ends the connection as a normal end of stream. Call it on the connection's own thread once
    /// the socket has closed its descriptor. Blocks for a quarter of a second at most.
    void finish();

private:
    mutable std::mutex m_mutex;
    std::intptr_t m_descriptor = -1; ///< guarded by m_mutex
};
