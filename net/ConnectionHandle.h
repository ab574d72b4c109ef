#pragma once

#include <cstdint>
#include <mutex>

/// A second descriptor of a thread's connection, by which another thread can break it off while its
/// own thread waits. Serves one connection after the other.
///
/// The socket's own descriptor will not do: the socket may close it at any moment, and its number
/// may then belong to another file. This one stays valid until finish().
class ConnectionHandle
{
public:
    ConnectionHandle() = default;
    /// Closes the handle if it is open.
    ~ConnectionHandle();
    ConnectionHandle(const ConnectionHandle &) = delete;
    ConnectionHandle &operator=(const ConnectionHandle &) = delete;

    /// Duplicates the descriptor, which stays the caller's, unless the handle is open. False when
    /// the system has no descriptor left. On the connection's own thread, as the next two.
    bool open(std::intptr_t descriptor);
    bool isOpen() const { return m_descriptor >= 0; }
    /// Closes the handle, if it is open. That closes the connection if the socket has closed its
    /// own descriptor; see SocketPlatform::endStream().
    void finish();

    /// True when nothing waits to be read. Any thread; false before open() and after finish().
    bool hasNoInput() const;

    /// Breaks the connection off, see SocketPlatform::breakOff(). Any thread; does nothing before
    /// open() and after finish().
    void breakOff();

private:
    mutable std::mutex m_mutex;
    std::intptr_t m_descriptor = -1; ///< changed under m_mutex, by the connection's own thread
};
