#include "net/SocketPlatform.h"

#include <QHostAddress>
#include <QTcpServer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <vector>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds endPatience{250};

/// More than this is not discarded: such a peer may as well be reset.
constexpr std::size_t discardLimit = std::size_t(1024) * 1024;

/// The most descriptors examined to find free ones; the program never needs nearly as many.
constexpr int mostProbed = 8192;

int number(std::intptr_t descriptor)
{
    return static_cast<int>(descriptor);
}

rlimit descriptorLimit()
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    return limit;
}

/// How many descriptors from `next` on are free, of as many as `numbers` has entries. Opens none:
/// another thread may need the last ones at this very moment.
template <typename Numbers>
std::ptrdiff_t countFree(Numbers &numbers, int next)
{
    for (pollfd &entry : numbers)
        entry.fd = next++;
    poll(numbers.data(), numbers.size(), 0);
    return std::count_if(numbers.begin(), numbers.end(),
                         [](const pollfd &entry) { return (entry.revents & POLLNVAL) != 0; });
}

/// Reads up to the buffer's size. Returns 0 at the end of the input, -1 when there is none now.
ssize_t receive(std::intptr_t descriptor, std::array<char, 16384> &buffer)
{
    ssize_t count = 0;
    do {
        count = recv(number(descriptor), buffer.data(), buffer.size(), MSG_DONTWAIT);
    } while (count < 0 && errno == EINTR);
    return count;
}

/// Whether the error concerns only the connection that waited, or its client's network.
bool isOfOneConnection(int error)
{
    constexpr std::array<int, 7> errors = {ECONNABORTED, ENETDOWN,     EPROTO,     EHOSTDOWN,
                                           ENETUNREACH,  EHOSTUNREACH, ENOPROTOOPT};
    return std::find(errors.begin(), errors.end(), error) != errors.end();
}

} // namespace

namespace SocketPlatform {

std::intptr_t duplicate(std::intptr_t descriptor)
{
    return fcntl(number(descriptor), F_DUPFD_CLOEXEC, 0);
}

void breakOff(std::intptr_t descriptor)
{
    ::shutdown(number(descriptor), SHUT_RDWR);
}

int longestWait()
{
    return INT_MAX; // shutdown() ends every wait at once
}

void endStream(std::intptr_t descriptor)
{
    using Clock = std::chrono::steady_clock;
    Clock::time_point end;
    std::array<char, 16384> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init)
    std::size_t discarded = 0;
    while (discarded < discardLimit) {
        const ssize_t count = receive(descriptor, buffer);
        if (count == 0 || (count < 0 && discarded == 0))
            return;
        if (count > 0) {
            if (discarded == 0) {
                ::shutdown(number(descriptor), SHUT_WR);
                end = Clock::now() + endPatience;
            }
            discarded += static_cast<std::size_t>(count);
            continue;
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0)
            return;
        pollfd waiting{number(descriptor), POLLIN, 0};
        if (poll(&waiting, 1, static_cast<int>(left)) == 0)
            return;
    }
}

bool hasInput(std::intptr_t descriptor, std::chrono::milliseconds time)
{
    pollfd waiting{number(descriptor), POLLIN, 0};
    return poll(&waiting, 1, static_cast<int>(time.count())) > 0;
}

bool waitForMoreInput(std::intptr_t descriptor, std::chrono::milliseconds time)
{
    char byte = 0;
    pollfd waiting{number(descriptor), POLLIN, 0};
    return poll(&waiting, 1, static_cast<int>(time.count())) > 0 &&
           recv(number(descriptor), &byte, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
}

void close(std::intptr_t descriptor)
{
    ::close(number(descriptor));
}

Accept accept(std::intptr_t listener, std::intptr_t &descriptor)
{
    do {
        descriptor = ::accept4(number(listener), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    } while (descriptor < 0 && (errno == EINTR || isOfOneConnection(errno)));
    if (descriptor >= 0)
        return Accept::Done;
    return errno == EAGAIN ? Accept::NoneWaits : Accept::Refused;
}

std::uint32_t peerAddress(std::intptr_t descriptor)
{
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    if (getpeername(number(descriptor), reinterpret_cast<sockaddr *>(&address), &size) != 0 ||
        address.sin_family != AF_INET)
        return 0;
    return ntohl(address.sin_addr.s_addr);
}

bool listenAlone(QTcpServer &server, const QHostAddress &address, quint16 port, int backlog)
{
    // This system shares no port unless both programs ask for it.
    if (!server.listen(address, port))
        return false;
    const int descriptor = number(server.socketDescriptor());
    ::listen(descriptor, backlog);
#ifdef TCP_DEFER_ACCEPT
    const int seconds = 1;
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_DEFER_ACCEPT, &seconds, sizeof(seconds));
#endif
    return true;
}

std::int64_t raiseDescriptorLimit(std::int64_t wanted)
{
    rlimit limit = descriptorLimit();
    const rlim_t target = std::min(limit.rlim_max, static_cast<rlim_t>(wanted));
    if (limit.rlim_cur < target) {
        limit.rlim_cur = target;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    const rlim_t now = descriptorLimit().rlim_cur;
    return static_cast<std::int64_t>(std::min<rlim_t>(now, INT32_MAX));
}

bool canOpen(int count)
{
    // The lowest free number is always given out first, so the last ones are free unless there has
    // been a shortage before. Only then are all numbers examined.
    const auto limit = static_cast<int>(std::min<rlim_t>(descriptorLimit().rlim_cur, INT_MAX));
    std::array<pollfd, 16> last{};
    if (count <= static_cast<int>(last.size()) &&
        countFree(last, limit - static_cast<int>(last.size())) >= count)
        return true;
    std::vector<pollfd> all(static_cast<std::size_t>(std::min(limit, mostProbed)));
    return countFree(all, 0) >= count;
}

} // namespace SocketPlatform
