#include "net/Listener.h"

namespace {

/// A connection is accepted only when this many descriptors are free: without one for its file, it
/// would get no answer.
constexpr int descriptorReserve = 16;

} // namespace

/// Keeps the descriptor open as long as it is used.
class Listener::Use
{
public:
    explicit Use(Listener &listener)
        : m_listener(listener)
    {
        const std::lock_guard<std::mutex> guard(listener.m_mutex);
        m_isOpen = listener.m_isOpen;
        if (m_isOpen)
            ++listener.m_users;
    }
    ~Use()
    {
        if (m_isOpen)
            m_listener.leave();
    }
    Use(const Use &) = delete;
    Use &operator=(const Use &) = delete;

    bool isOpen() const { return m_isOpen; }

private:
    Listener &m_listener;
    bool m_isOpen;
};

Listener::Listener(std::intptr_t listening)
    : m_descriptor(SocketPlatform::duplicate(listening))
    , m_isOpen(isUsable())
{
}

Listener::~Listener()
{
    close();
}

SocketPlatform::Accept Listener::accept(std::intptr_t &descriptor)
{
    const Use use(*this);
    if (!use.isOpen())
        return SocketPlatform::Accept::NoneWaits;
    if (!SocketPlatform::canOpen(descriptorReserve))
        return SocketPlatform::hasInput(m_descriptor) ? SocketPlatform::Accept::Refused
                                                      : SocketPlatform::Accept::NoneWaits;
    return SocketPlatform::accept(m_descriptor, descriptor);
}

bool Listener::wait(std::chrono::milliseconds time)
{
    const Use use(*this);
    return !use.isOpen() || SocketPlatform::hasInput(m_descriptor, time);
}

void Listener::close()
{
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (!m_isOpen)
            return;
        m_isOpen = false;
        ++m_users;
    }
    SocketPlatform::breakOff(m_descriptor);
    leave();
}

void Listener::leave()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (--m_users == 0 && !m_isOpen)
        SocketPlatform::close(m_descriptor);
}
