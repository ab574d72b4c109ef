#pragma once

#include <cstdint>
#include <mutex>

/// The second descriptor of a thread's connection, by which it can be broken off from another
/// thread while its own waits. One connection after the other.
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

    /// Duplicates the descriptor, which stays the caller's, unless that has been done. False when
    /// no second descriptor is to be had. The connection's own thread, as the next two.
    bool open(std::intptr_t descriptor);
    bool isOpen() const { return m_descriptor >= 0; }
    /// Closes the handle, if it is open, and with it the connection, once the socket has closed its
    /// own descriptor; see SocketPlatform::endStream().
    void finish();

    /// True when nothing waits to be read. Any thread; false before open() and after finish().
    bool hasNoInput() const;

    /// Ends the connection in both directions. Any thread; nothing before open() and after
    /// finish().
    void breakOff();

private:
    mutable std::mutex m_mutex;
    std::intptr_t m_descriptor = -1; ///< changed under m_mutex, by the connection's own thread
};
