#pragma once

#include <QtGlobal>

#include <cstddef>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

/// The plain TCP sockets of this system, where they go by different names.
namespace TestSocket {

#ifdef Q_OS_WIN
using Handle = SOCKET;
using Size = int;
constexpr Handle none = INVALID_SOCKET;
constexpr int sendFlags = 0;
constexpr int endOfSending = SD_SEND;

inline Handle open()
{
    return ::socket(AF_INET, SOCK_STREAM, 0);
}

inline void close(Handle handle)
{
    ::closesocket(handle);
}

inline bool hasInput(Handle handle)
{
    WSAPOLLFD waiting{handle, POLLRDNORM, 0};
    return ::WSAPoll(&waiting, 1, 0) > 0;
}
#else
using Handle = int;
using Size = std::size_t;
constexpr Handle none = -1;
constexpr int sendFlags = MSG_NOSIGNAL;
constexpr int endOfSending = SHUT_WR;

inline Handle open()
{
    return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

inline void close(Handle handle)
{
    ::close(handle);
}

inline bool hasInput(Handle handle)
{
    pollfd waiting{handle, POLLIN, 0};
    return ::poll(&waiting, 1, 0) > 0;
}
#endif

} // namespace TestSocket
