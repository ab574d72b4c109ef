#pragma once

#include <cstdint>
#include <mutex>

/// A connection's second descriptor, by which it can be broken off from another thread.
///
/// The socket's own descriptor will not do: the socket may close it at any moment, and its number
/// may by then belong to somebody else. This one stays valid until finish().
class ConnectionHandle
{
public:
    /// Duplicates the descriptor, which stays the caller's.
    explicit ConnectionHandle(std::intptr_t descriptor);
    /// Closes the handle if that has not been done yet.
    ~ConnectionHandle();
    ConnectionHandle(const ConnectionHandle &) = delete;
    ConnectionHandle &operator=(const ConnectionHandle &) = delete;

    /// False when no second descriptor was to be had, and after finish().
    bool isValid() const;

    /// True when something waits to be read. Any thread; false after finish().
    bool hasInput() const;

    /// Ends the connection in both directions. Any thread; nothing after finish().
    void breakOff();

    /// Ends the connection as a normal end of stream. Call it on the connection's own thread once
    /// the socket has closed its descriptor. Blocks for a quarter of a second at most.
    void finish();

private:
    mutable std::mutex m_mutex;
    std::intptr_t m_descriptor; ///< guarded by m_mutex; only finish() changes it
};
