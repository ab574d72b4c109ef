#include "net/Listener.h"

namespace {

/// A connection is accepted only when this many descriptors are free, as without any for the files
/// it would go without its answer.
constexpr int descriptorReserve = 16;

} // namespace

Listener::Listener(std::intptr_t listening)
    : m_descriptor(SocketPlatform::duplicate(listening))
{
}

Listener::~Listener()
{
    if (isUsable())
        SocketPlatform::close(m_descriptor);
}

SocketPlatform::Accept Listener::accept(std::intptr_t &descriptor)
{
    if (!SocketPlatform::canOpen(descriptorReserve))
        return wait(std::chrono::milliseconds(0)) ? SocketPlatform::Accept::Refused
                                                  : SocketPlatform::Accept::NoneWaits;
    return SocketPlatform::accept(m_descriptor, descriptor);
}

bool Listener::wait(std::chrono::milliseconds time) const
{
    return SocketPlatform::hasInput(m_descriptor, time);
}

void Listener::close()
{
    SocketPlatform::breakOff(m_descriptor);
}
