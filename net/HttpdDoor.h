#pragma once

#include "net/SocketPlatform.h"

#include <QThread>

#include <atomic>
#include <functional>

/// The thread that lets phones in whatever the other threads do: it starts connection threads, has
/// more connections worked on when the line stands still, and accepts while no connection thread is
/// free to. Nothing here takes long.
class HttpdDoor : public QThread
{
    Q_OBJECT

public:
    /// What the thread does; called on it.
    struct Calls
    {
        std::function<void()> lookAfterLine;
        std::function<bool()> mayAccept; ///< false while others accept, or there is no room
        std::function<SocketPlatform::Accept()> accept;
        std::function<void()> shortage; ///< nothing can be accepted: make room
        std::function<void()> rest;     ///< waits until there may be something to do
    };

    explicit HttpdDoor(Calls calls);
    /// Stops the thread and waits for it; Calls::rest() has to return.
    ~HttpdDoor() override;

    /// Ends the thread once it no longer rests, without waiting for it.
    void stop();

protected:
    void run() override;

private:
    enum class State {
        Open,
        Closing,
        Ended, ///< run() is over; publishes its writes to other threads
    };

    bool acceptAll();
    bool isOpen() const { return m_state == State::Open; }

    Calls m_calls;
    std::atomic<State> m_state{State::Open};
};
