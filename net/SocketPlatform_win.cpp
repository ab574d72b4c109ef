#include "net/SocketPlatform.h"

#include <QHostAddress>
#include <QTcpServer>

#include <winsock2.h>

#include <windows.h>

#include <array>

namespace {

constexpr std::chrono::milliseconds endPatience{250};

/// More than this is not discarded: such a peer may as well be reset.
constexpr std::size_t discardLimit = std::size_t(1024) * 1024;

SOCKET number(std::intptr_t descriptor)
{
    return static_cast<SOCKET>(descriptor);
}

/// True when input, or its end, is there within the time.
bool waitForInput(std::intptr_t descriptor, std::chrono::milliseconds time)
{
    WSAPOLLFD waiting{number(descriptor), POLLRDNORM, 0};
    return WSAPoll(&waiting, 1, static_cast<INT>(time.count())) > 0;
}

/// A listening socket with the port to itself, or INVALID_SOCKET. The system takes a `backlog`
/// beyond some 200 only as a negative number, and only once.
SOCKET exclusiveListener(quint32 address, quint16 port, int backlog)
{
    static const bool socketsReady = [] {
        WSADATA data{};
        return WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    if (!socketsReady)
        return INVALID_SOCKET;
    const SOCKET listener = WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0,
                                       WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
    if (listener == INVALID_SOCKET)
        return INVALID_SOCKET;

    const int on = 1;
    sockaddr_in local{};
    local.sin_family = AF_INET;
    local.sin_addr.s_addr = htonl(address);
    local.sin_port = htons(port);
    const auto *const option = reinterpret_cast<const char *>(&on);
    const auto *const bound = reinterpret_cast<const sockaddr *>(&local);
    if (setsockopt(listener, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, option, sizeof(on)) == 0 &&
        bind(listener, bound, sizeof(local)) == 0 && listen(listener, -backlog) == 0)
        return listener;
    closesocket(listener);
    return INVALID_SOCKET;
}

} // namespace

namespace SocketPlatform {

std::intptr_t duplicate(std::intptr_t descriptor)
{
    WSAPROTOCOL_INFOW info{};
    if (WSADuplicateSocketW(number(descriptor), GetCurrentProcessId(), &info) != 0)
        return -1;
    const SOCKET copy = WSASocketW(FROM_PROTOCOL_INFO, FROM_PROTOCOL_INFO, FROM_PROTOCOL_INFO,
                                   &info, 0, WSA_FLAG_OVERLAPPED);
    return copy == INVALID_SOCKET ? -1 : static_cast<std::intptr_t>(copy);
}

void breakOff(std::intptr_t descriptor)
{
    // Sending stays open: Qt does not know the error with which it would fail, and would retry
    // forever without a pause, whatever its timeout.
    ::shutdown(number(descriptor), SD_RECEIVE);
}

int longestWait()
{
    return 100; // a thread that waits to send, or in select(), does not notice shutdown()
}

void endStream(std::intptr_t descriptor)
{
    using Clock = std::chrono::steady_clock;
    using std::chrono::milliseconds;
    ::shutdown(number(descriptor), SD_SEND);

    const Clock::time_point end = Clock::now() + endPatience;
    std::array<char, 16384> buffer;
    std::size_t discarded = 0;
    while (discarded < discardLimit) {
        const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
        const milliseconds wait = discarded == 0 ? milliseconds(0) : left;
        if (left.count() < 0 || !waitForInput(descriptor, wait))
            return;
        const int count =
            recv(number(descriptor), buffer.data(), static_cast<int>(buffer.size()), 0);
        if (count <= 0)
            return;
        discarded += static_cast<std::size_t>(count);
    }
}

bool hasInput(std::intptr_t descriptor, std::chrono::milliseconds time)
{
    return waitForInput(descriptor, time);
}

bool waitForMoreInput(std::intptr_t descriptor, std::chrono::milliseconds time)
{
    char byte = 0;
    return waitForInput(descriptor, time) && recv(number(descriptor), &byte, 1, MSG_PEEK) > 0;
}

void close(std::intptr_t descriptor)
{
    closesocket(number(descriptor));
}

Accept accept(std::intptr_t listener, std::intptr_t &descriptor)
{
    const SOCKET connection = ::accept(number(listener), nullptr, nullptr);
    if (connection != INVALID_SOCKET) {
        descriptor = static_cast<std::intptr_t>(connection);
        return Accept::Done;
    }
    const int error = WSAGetLastError();
    return error == WSAEWOULDBLOCK || error == WSAECONNRESET ? Accept::NoneWaits : Accept::Refused;
}

std::uint32_t peerAddress(std::intptr_t descriptor)
{
    sockaddr_in address{};
    int size = sizeof(address);
    if (getpeername(number(descriptor), reinterpret_cast<sockaddr *>(&address), &size) != 0 ||
        address.sin_family != AF_INET)
        return 0;
    return ntohl(address.sin_addr.s_addr);
}

bool listenAlone(QTcpServer &server, const QHostAddress &address, quint16 port, int backlog)
{
    // Qt cannot set the exclusive use of a server's port, which has to be set before the port is
    // bound. Without it a second program may listen on the port and get some of the connections.
    const SOCKET listener = exclusiveListener(address.toIPv4Address(), port, backlog);
    if (listener != INVALID_SOCKET && server.setSocketDescriptor(static_cast<qintptr>(listener)))
        return true;
    if (listener != INVALID_SOCKET)
        closesocket(listener);
    // A port that the system chooses is free, and Qt has texts for its errors.
    return port == 0 && server.listen(address, port);
}

std::int64_t raiseDescriptorLimit(std::int64_t wanted)
{
    return wanted; // no such limit on sockets here
}

bool canOpen(int)
{
    return true;
}

} // namespace SocketPlatform
