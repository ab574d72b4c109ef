#include "net/ConnectionHandle.h"

#include "net/SocketPlatform.h"

namespace {
constexpr std::chrono::milliseconds endPatience{250};
}

ConnectionHandle::~ConnectionHandle()
{
    if (m_descriptor >= 0)
        SocketPlatform::close(m_descriptor);
}

bool ConnectionHandle::open(std::intptr_t descriptor)
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_descriptor = SocketPlatform::duplicate(descriptor);
    return m_descriptor >= 0;
}

bool ConnectionHandle::hasInput() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_descriptor >= 0 && SocketPlatform::hasInput(m_descriptor);
}

void ConnectionHandle::breakOff()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_descriptor >= 0)
        SocketPlatform::breakOff(m_descriptor);
}

void ConnectionHandle::finish()
{
    if (m_descriptor < 0)
        return;
    // Unlocked, so that breakOff() can cut the wait short; nobody else changes the descriptor.
    SocketPlatform::endStream(m_descriptor, endPatience);

    const std::lock_guard<std::mutex> guard(m_mutex);
    SocketPlatform::close(m_descriptor);
    m_descriptor = -1;
}
