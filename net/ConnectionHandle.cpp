#include "net/ConnectionHandle.h"

#include "net/SocketPlatform.h"

ConnectionHandle::~ConnectionHandle()
{
    finish();
}

bool ConnectionHandle::open(std::intptr_t descriptor)
{
    if (isOpen())
        return true;
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_descriptor = SocketPlatform::duplicate(descriptor);
    return isOpen();
}

void ConnectionHandle::finish()
{
    if (!isOpen())
        return;
    // Unlocked, so that breakOff() can cut the wait short; nobody else changes the descriptor.
    SocketPlatform::endStream(m_descriptor);
    const std::lock_guard<std::mutex> guard(m_mutex);
    SocketPlatform::close(m_descriptor);
    m_descriptor = -1;
}

bool ConnectionHandle::hasNoInput() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return isOpen() && !SocketPlatform::hasInput(m_descriptor);
}

void ConnectionHandle::breakOff()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (isOpen())
        SocketPlatform::breakOff(m_descriptor);
}
