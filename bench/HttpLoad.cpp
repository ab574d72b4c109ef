#include "HttpLoad.h"

#include <netinet/in.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstring>
#include <future>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int loadThreads = 2;

/// Any answer over loopback comes far sooner; a server that is silent for this long has failed.
constexpr int patienceMs = 20000;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The socket address of 127.0.0.0 plus `host`.
sockaddr address(int host, std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr =
        htonl((INADDR_LOOPBACK & IN_CLASSA_NET) | static_cast<std::uint32_t>(host));
    sockaddr generic{};
    static_assert(sizeof generic == sizeof address);
    std::memcpy(&generic, &address, sizeof address);
    return generic;
}

int connectTo(std::uint16_t port, int host = 0)
{
    const int connection = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (host != 0) {
        const int later = 1; // connect() chooses the port
        ::setsockopt(connection, IPPROTO_IP, IP_BIND_ADDRESS_NO_PORT, &later, sizeof later);
        const sockaddr own = address(host, 0);
        static_cast<void>(::bind(connection, &own, sizeof own));
    }
    const sockaddr server = address(1, port);
    // The first use of the socket reports a failure.
    static_cast<void>(::connect(connection, &server, sizeof server));
    return connection;
}

/// The work of one thread: an event loop over its share of the phones.
class Loader
{
public:
    Loader(std::uint16_t port, const std::vector<LoadRequest> &requests,
           std::atomic<std::size_t> &next, double seconds)
        : m_port(port)
        , m_requests(requests)
        , m_next(next)
        , m_seconds(seconds)
        , m_epoll(::epoll_create1(EPOLL_CLOEXEC))
    {
    }
    ~Loader() { ::close(m_epoll); }
    Loader(const Loader &) = delete;
    Loader &operator=(const Loader &) = delete;

    LoadResult run(int atOnce)
    {
        m_start = Clock::now();
        m_phones.resize(static_cast<std::size_t>(atOnce));
        for (Phone &phone : m_phones)
            begin(phone);
        std::array<epoll_event, 64> events;
        while (m_open > 0) {
            const int count =
                ::epoll_wait(m_epoll, events.data(), static_cast<int>(events.size()), patienceMs);
            if (count == 0)
                break; // the server does not answer the remaining phones
            for (int i = 0; i < count; ++i)
                proceed(*static_cast<Phone *>(events.at(static_cast<std::size_t>(i)).data.ptr));
        }
        m_result.faults += m_open;
        return m_result;
    }

private:
    struct Phone
    {
        int socket = -1;
        const LoadRequest *request = nullptr;
        bool asked = false;
        QByteArray answer;
        Clock::time_point start;
    };

    void begin(Phone &phone)
    {
        if (m_seconds > 0 && secondsSince(m_start) >= m_seconds)
            return;
        const std::size_t number = m_next++;
        if (m_seconds <= 0 && number >= m_requests.size())
            return;
        phone.request = &m_requests[number % m_requests.size()];
        phone.asked = false;
        phone.answer.resize(0);
        phone.start = Clock::now();
        phone.socket = connectTo(m_port, phone.request->host);
        epoll_event event{};
        event.events = EPOLLOUT;
        event.data.ptr = &phone;
        ::epoll_ctl(m_epoll, EPOLL_CTL_ADD, phone.socket, &event);
        ++m_open;
    }

    void proceed(Phone &phone)
    {
        if (!phone.asked) {
            phone.asked = true;
            const QByteArray &bytes = phone.request->bytes;
            ::send(phone.socket, bytes.constData(), static_cast<std::size_t>(bytes.size()),
                   MSG_NOSIGNAL);
            epoll_event event{};
            event.events = EPOLLIN;
            event.data.ptr = &phone;
            ::epoll_ctl(m_epoll, EPOLL_CTL_MOD, phone.socket, &event);
            return;
        }
        std::array<char, 16384> buffer;
        const ssize_t count = ::recv(phone.socket, buffer.data(), buffer.size(), 0);
        if (count > 0)
            phone.answer.append(buffer.data(), static_cast<int>(count));
        else
            end(phone);
    }

    void end(Phone &phone)
    {
        ::close(phone.socket);
        --m_open;
        const bool right = phone.answer.startsWith("HTTP/1.") &&
                           phone.answer.contains(phone.request->mark) &&
                           phone.answer.endsWith("</vl_provision>\n");
        ++(right ? m_result.answers : m_result.faults);
        m_result.longest = std::max(m_result.longest, secondsSince(phone.start));
        begin(phone);
    }

    std::uint16_t m_port;
    const std::vector<LoadRequest> &m_requests;
    std::atomic<std::size_t> &m_next;
    double m_seconds;
    int m_epoll;
    int m_open = 0;
    Clock::time_point m_start;
    std::vector<Phone> m_phones;
    LoadResult m_result;
};

} // namespace

LoadResult playPhones(std::uint16_t port, const std::vector<LoadRequest> &requests, int atOnce,
                      double seconds)
{
    std::atomic<std::size_t> next{0};
    const auto start = Clock::now();
    std::array<std::future<LoadResult>, loadThreads> threads;
    for (auto &thread : threads) {
        thread = std::async(std::launch::async, [&] {
            return Loader(port, requests, next, seconds).run(atOnce / loadThreads);
        });
    }
    LoadResult all;
    for (auto &thread : threads) {
        const LoadResult part = thread.get();
        all.answers += part.answers;
        all.faults += part.faults;
        all.longest = std::max(all.longest, part.longest);
    }
    all.seconds = secondsSince(start);
    return all;
}

IdleConnections::IdleConnections(std::uint16_t port, int count)
{
    constexpr int hosts = 8;
    for (int i = 0; i < count; ++i)
        m_sockets.push_back(connectTo(port, 2 + i % hosts));
}

int IdleConnections::standing() const
{
    return static_cast<int>(std::count_if(m_sockets.begin(), m_sockets.end(), [](int socket) {
        char byte = 0;
        return ::recv(socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && errno == EAGAIN;
    }));
}

IdleConnections::~IdleConnections()
{
    for (const int socket : m_sockets)
        ::close(socket);
}
