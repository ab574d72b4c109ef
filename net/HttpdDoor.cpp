#include "net/HttpdDoor.h"

#include <chrono>
#include <utility>

namespace {

/// How long to wait, when nothing can be accepted, before trying again.
constexpr std::chrono::milliseconds retryInterval{50};

/// The most connections accepted in a row, so that the line is looked after even in a flood.
constexpr int batch = 64;

} // namespace

HttpdDoor::HttpdDoor(Calls calls)
    : m_calls(std::move(calls))
{
    connect(
        this, &QThread::finished, this, [this] { m_state = State::Ended; }, Qt::DirectConnection);
}

HttpdDoor::~HttpdDoor()
{
    stop();
    wait();
    Q_ASSERT(!isOpen());
}

void HttpdDoor::stop()
{
    State open = State::Open;
    m_state.compare_exchange_strong(open, State::Closing);
}

void HttpdDoor::run()
{
    while (isOpen()) {
        m_calls.lookAfterLine();
        if (acceptAll()) {
            m_calls.rest();
        } else if (isOpen()) {
            // Without a pause, the retries would keep failing in a busy loop.
            m_calls.shortage();
            QThread::msleep(static_cast<unsigned long>(retryInterval.count()));
        }
    }
}

/// False when a connection waits but cannot be accepted.
bool HttpdDoor::acceptAll()
{
    using SocketPlatform::Accept;
    for (int i = 0; isOpen() && m_calls.mayAccept(); ++i) {
        const Accept result = m_calls.accept();
        if (result != Accept::Done)
            return result == Accept::NoneWaits;
        if (i % batch == batch - 1)
            m_calls.lookAfterLine();
    }
    return true;
}
