#pragma once

#include "net/SocketPlatform.h"

#include <QThread>

#include <atomic>
#include <functional>

/// The thread that sees to it that telephones get in whatever the other threads do: it starts
/// connection threads, lets more be worked on when the line stands still, and accepts while none of
/// them is free to. Nothing here takes long.
class HttpdDoor : public QThread
{
    Q_OBJECT

public:
    /// What happens here; called on this thread.
    struct Calls
    {
        std::function<void()> lookAfterLine;
        std::function<bool()> mayAccept; ///< false while others accept, or there is no room
        std::function<SocketPlatform::Accept()> accept;
        std::function<void()> shortage; ///< nothing can be accepted: make room
        std::function<void()> rest;     ///< waits until there may be something to do
    };

    explicit HttpdDoor(Calls calls);
    /// Waits for the thread, which has been stopped.
    ~HttpdDoor() override;

    /// Ends the thread once it no longer rests, without waiting for it.
    void stop();

protected:
    void run() override;

private:
    enum class State {
        Open,
        Closing,
        Ended, ///< run() is over; publishes what was done there
    };

    bool acceptAll();
    bool isOpen() const { return m_state == State::Open; }

    Calls m_calls;
    std::atomic<State> m_state{State::Open};
};
