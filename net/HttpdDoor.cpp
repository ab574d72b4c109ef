#include "net/HttpdDoor.h"

#include "net/SocketPlatform.h"

#include <chrono>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How often the line is looked after; a fraction of what a telephone would notice.
constexpr milliseconds lookInterval{5};

/// How long to wait, when nothing can be accepted, before trying again.
constexpr milliseconds retryInterval{50};

/// Connections accepted in a row at most, so that a flood does not keep the line from being looked
/// after.
constexpr int batch = 64;

} // namespace

HttpdDoor::HttpdDoor(std::intptr_t listener, Calls calls)
    : m_listener(SocketPlatform::duplicate(listener))
    , m_calls(std::move(calls))
{
    connect(
        this, &QThread::finished, this, [this] { m_state = State::Ended; }, Qt::DirectConnection);
}

HttpdDoor::~HttpdDoor()
{
    stop();
    wait();
    Q_ASSERT(!isOpen());
    if (isUsable())
        SocketPlatform::close(m_listener);
}

bool HttpdDoor::isUsable() const
{
    return m_listener >= 0;
}

void HttpdDoor::stop()
{
    State open = State::Open;
    m_state.compare_exchange_strong(open, State::Closing);
    if (isUsable())
        SocketPlatform::breakOff(m_listener);
}

void HttpdDoor::run()
{
    Clock::time_point nextLook = Clock::now();
    while (isOpen()) {
        const bool waiting = m_calls.hasWaiting();
        if (waiting && Clock::now() >= nextLook) {
            m_calls.lookAfterLine();
            nextLook = Clock::now() + lookInterval;
        }
        const milliseconds longest(SocketPlatform::longestWait());
        if (!SocketPlatform::hasInput(m_listener, waiting ? lookInterval : longest))
            continue;
        if (!acceptAll() && isOpen()) {
            // Trying again at once would only fail again, for ever.
            m_calls.shortage();
            QThread::msleep(static_cast<unsigned long>(retryInterval.count()));
        }
    }
}

/// False when there is something to accept that cannot be.
bool HttpdDoor::acceptAll()
{
    for (int i = 0; i < batch && isOpen(); ++i) {
        if (!m_calls.canAccept())
            return false;
        std::intptr_t descriptor = -1;
        switch (SocketPlatform::accept(m_listener, descriptor)) {
        case SocketPlatform::Accept::Done:
            m_calls.accepted(descriptor);
            break;
        case SocketPlatform::Accept::NoneWaits:
            return true;
        case SocketPlatform::Accept::Refused:
            return false;
        }
    }
    return true;
}
