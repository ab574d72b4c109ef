#pragma once

#include "net/SocketPlatform.h"
#include "net/WaitingLine.h"

#include <QVector>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <unordered_map>

class HttpdThread;

/// Hands accepted connections to the threads that serve them, and ensures that neither idle clients
/// nor one busy address keep the others out. See docs/threads.md.
///
/// Any thread, unless a function says otherwise. The mutex is held for a few instructions at a
/// time, or for a look at each idle connection; never during a wait.
class ConnectionPool
{
public:
    /// Connections of one address that are served at a time; further ones wait.
    static constexpr int peerShare = 128;
    /// Requests of one address that are answered at a time. Even when each takes long, requests of
    /// other addresses that need the same disk, or the same document, then do not.
    static constexpr int peerWork = 8;

    /// Where connections come from. Any thread.
    struct Entrance
    {
        /// Accepts a connection that waits, and hands it to admit().
        std::function<SocketPlatform::Accept()> accept;
        /// True once a connection waits or none can come any more; false when the time is over.
        std::function<bool(std::chrono::milliseconds time)> wait;
        /// A connection of this address was closed before a thread could take it.
        std::function<void(quint32 peer)> turnedAway;
    };

    /// At most `limit` connections are served at a time, and about `maxWaiting` wait. Beyond that,
    /// an address with more than its share waiting loses one; without such, nothing is accepted.
    ConnectionPool(int limit, int maxWaiting);
    /// The pool must be stopped and all threads ended.
    ~ConnectionPool() = default;
    ConnectionPool(const ConnectionPool &) = delete;
    ConnectionPool &operator=(const ConnectionPool &) = delete;

    /// To be called before there is a thread. Once the pool is stopped, Entrance::wait() has to
    /// return soon.
    void open(Entrance entrance);

    /// Takes a connection over, puts it into the line and calls a resting thread. Returns how many
    /// threads the caller has to start for it: see started().
    int admit(const AcceptedConnection &connection);
    /// To be called before each rest of the door thread: raises the number of connections worked on
    /// when the line stands still, and drops idle ones where there is no room. Returns how many
    /// threads the caller has to start.
    int lookAfterLine();
    /// Whether the door thread is to accept: no other thread waits at the entrance, and there is
    /// room in the line.
    bool needsDoor() const;
    /// Lets the door thread wait until it may have something to do: for a few milliseconds while
    /// connections come, else until one comes for which no other thread waits.
    void restAtDoor();
    /// Calls a thread for an errand, unless a working one comes by anyway. Returns how many threads
    /// the caller has to start.
    int callForErrand();
    /// Drops the connection that has been idle longest; false when there is none.
    bool dropLongestIdle();
    /// Reports a thread that the caller had to start; null when it could not be started.
    void started(HttpdThread *thread);
    /// The thread's object is being destroyed.
    void forget(HttpdThread *thread);
    /// All existing thread objects.
    QVector<HttpdThread *> threads() const;

    /// What a thread does next.
    enum class Next {
        Connection, ///< it serves the connection that it was given
        Errand,     ///< it does what is to be done between two connections
        End,        ///< it ends, as it is no longer needed
    };
    /// Ends the thread's connection, if any, and waits for work. Called by the thread itself.
    Next next(HttpdThread &thread);
    /// Called around each wait for the client; another connection may be worked on meanwhile.
    void beginWait();
    void endWait();
    /// Called by the thread around the making of an answer. Waits while peerWork answers to the
    /// address are being made. False when the service ends; endWork() is then not called.
    bool beginWork(const HttpdThread &thread);
    void endWork(const HttpdThread &thread);

    /// Drops all connections, and makes every thread end.
    void stop();
    bool isStopped() const;

private:
    struct Peer
    {
        int served = 0;  ///< connections that have a thread
        int working = 0; ///< those of them between beginWork() and endWork()
        std::condition_variable workDone;
    };

    using Lock = std::unique_lock<std::mutex>;

    bool hasShareLeft(quint32 peer) const;
    bool mayServe(quint32 peer) const;
    bool hasRoom() const;
    /// Threads that will take a connection, or find that there is none.
    int onTheWay() const { return m_called + m_starting + m_accepting; }
    bool takeFor(HttpdThread &thread);
    void leave(HttpdThread &thread);
    bool goToEntrance(Lock &lock);
    SocketPlatform::Accept accept(Lock &lock);
    void watch(Lock &lock);
    bool rest(Lock &lock);
    void turnAway(const AcceptedConnection &connection);
    int callThreads();
    void callForLine();
    void callForEntrance();
    void callDoor();
    void makeRoom();
    bool dropLongestIdle(const quint32 *peer);

    mutable std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_call;
    std::condition_variable m_doorCall;
    Entrance m_entrance; ///< does not change once there are threads
    WaitingLine m_line;
    std::unordered_map<quint32, Peer> m_peers; ///< the addresses that are served
    QVector<HttpdThread *> m_threads;
    const int m_limit;
    const int m_maxWaiting;
    int m_level;         ///< connections that may be worked on at a time
    int m_served = 0;    ///< threads with a connection
    int m_working = 0;   ///< those of them that do not wait for their client
    int m_alive = 0;     ///< threads that are to be started or have not left next() for good
    int m_resting = 0;   ///< threads that wait in next()
    int m_called = 0;    ///< those of them that have been called, and are on their way
    int m_starting = 0;  ///< threads that are being started
    int m_accepting = 0; ///< threads that accept a connection, for themselves
    quint64 m_taken = 0; ///< connections that were given to a thread so far
    quint64 m_takenAtLook = 0;
    bool m_isQuiet = true; ///< no connection was given out between the last two looks
    bool m_hasErrand = false;
    bool m_isWatched = false; ///< a thread waits at the entrance
    bool m_doorRests = false; ///< the door thread rests until it is called
    bool m_stopped = false;
};
