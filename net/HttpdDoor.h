#pragma once

#include <QThread>

#include <atomic>
#include <cstdint>
#include <functional>

/// The thread on which connections are accepted, so that telephones get in while the GUI thread is
/// busy. Only accepts and tells; nothing here takes long.
class HttpdDoor : public QThread
{
    Q_OBJECT

public:
    /// What happens here; called on this thread.
    struct Calls
    {
        std::function<bool()> canAccept; ///< false when there is nothing left to serve one with
        std::function<void(std::intptr_t descriptor)> accepted; ///< takes the connection over
        std::function<bool()> hasWaiting;    ///< true while `lookAfterLine` has something to do
        std::function<void()> lookAfterLine; ///< every few milliseconds then
        std::function<void()> shortage;      ///< nothing can be accepted: make room
    };

    /// Accepts from this listening descriptor, which stays the caller's.
    HttpdDoor(std::intptr_t listener, Calls calls);
    /// Waits for the thread.
    ~HttpdDoor() override;

    /// False when the system had no descriptor left for it.
    bool isUsable() const;
    /// Ends the thread soon, without waiting for it. The port is free when it has ended.
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

    std::intptr_t m_listener; ///< a second descriptor of the listening socket
    Calls m_calls;
    std::atomic<State> m_state{State::Open};
};
