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

/// Brings accepted connections and the threads that serve them together, and sees to it that
/// neither idle clients nor one busy address keep the others out. See docs/threads.md.
///
/// Any thread, where nothing else is said. The mutex is held for a few instructions at a time,
/// or for a look at each idle connection; never while something is waited for.
class ConnectionPool
{
public:
    /// Connections of one address that are served at a time; what it has beyond waits.
    static constexpr int peerShare = 128;
    /// Requests of one address that are answered at a time, so that even when each takes long, one
    /// of another address that needs the same disk, or the same document, does not.
    static constexpr int peerWork = 8;

    /// Where connections come from. Any thread.
    struct Entrance
    {
        /// Accepts one that waits, and hands it to admit().
        std::function<SocketPlatform::Accept()> accept;
        /// True once one waits or nothing more can come; false when the time is over.
        std::function<bool(std::chrono::milliseconds time)> wait;
        /// One of this address was closed before a thread could take it.
        std::function<void(quint32 peer)> turnedAway;
    };

    /// At most `limit` connections are served at a time, and about `maxWaiting` wait. Beyond, an
    /// address with more than its share waiting loses one; where none has, none is accepted.
    ConnectionPool(int limit, int maxWaiting);
    /// Stopped, and all threads have ended.
    ~ConnectionPool() = default;
    ConnectionPool(const ConnectionPool &) = delete;
    ConnectionPool &operator=(const ConnectionPool &) = delete;

    /// To be called before there is a thread. Once stopped, nobody waits for the entrance any more
    /// than it takes to tell that nothing can come.
    void open(Entrance entrance);

    /// Puts a connection, which becomes the pool's, into the line and calls a thread that rests.
    /// Returns how many threads the caller has to start for it: see started().
    int admit(const AcceptedConnection &connection);
    /// To be called before each rest of the door thread: lets more be worked on when the line
    /// stands still, and drops idle connections where there is no room. Returns how many threads
    /// the caller has to start.
    int lookAfterLine();
    /// Whether the door thread is to accept: no other thread waits at the entrance, and there is
    /// room in the line.
    bool needsDoor() const;
    /// The door thread waits until there may be something for it to do: for a few milliseconds
    /// while connections come, else until one comes for which no other thread waits.
    void restAtDoor();
    /// Calls a thread for an errand, unless one is at work and comes by anyway. Returns how many
    /// threads the caller has to start.
    int callForErrand();
    /// Drops the connection that has been idle longest; false when there is none.
    bool dropLongestIdle();
    /// A thread that was to be started exists, or, with null, could not be had.
    void started(HttpdThread *thread);
    /// The thread's object is being destroyed.
    void forget(HttpdThread *thread);
    /// All thread objects there are.
    QVector<HttpdThread *> threads() const;

    /// What a thread does next.
    enum class Next {
        Connection, ///< serves the one that it has been given
        Errand,     ///< what is to be done between two connections, without one
        End,        ///< it is no longer needed
    };
    /// Ends the thread's connection, if it had one, and waits for what comes. The thread itself.
    Next next(HttpdThread &thread);
    /// Around each wait for the client, in which another connection may be worked on.
    void beginWait();
    void endWait();
    /// Around the making of an answer; waits while the address has enough of them in the making.
    /// False when the service ends, and there is no endWork() then. The thread itself.
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
    std::unordered_map<quint32, Peer> m_peers; ///< those that are served
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
    bool m_isQuiet = true; ///< none was given to one between the last two looks
    bool m_hasErrand = false;
    bool m_isWatched = false; ///< a thread waits at the entrance
    bool m_doorRests = false; ///< until it is called
    bool m_stopped = false;
};
