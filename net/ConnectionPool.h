#pragma once

#include "net/WaitingLine.h"

#include <QVector>

#include <condition_variable>
#include <mutex>
#include <unordered_map>

class HttpdThread;

/// Brings accepted connections and the threads that serve them together, and sees to it that
/// neither idle clients nor one busy address keep the others out. See docs/threads.md.
///
/// Any thread, where nothing else is said. The mutex is held for a few instructions at a time.
class ConnectionPool
{
public:
    /// Connections of one address that are served at a time; what it has beyond waits.
    static constexpr int peerShare = 128;
    /// Requests of one address that are answered at a time, so that even when each takes long, one
    /// of another address that needs the same disk, or the same document, does not.
    static constexpr int peerWork = 8;

    /// At most `limit` connections are served at a time, and at most `maxWaiting` wait; beyond, the
    /// address that has most of those loses one.
    ConnectionPool(int limit, int maxWaiting);
    /// Stopped, and all threads have ended.
    ~ConnectionPool() = default;
    ConnectionPool(const ConnectionPool &) = delete;
    ConnectionPool &operator=(const ConnectionPool &) = delete;

    /// Puts a connection, which becomes the pool's, into the line and calls a thread that rests.
    /// Returns how many threads the caller has to start for it: see started().
    int admit(const AcceptedConnection &connection);
    /// To be called every few milliseconds while connections wait: lets more be worked on when the
    /// line stands still, and drops idle connections where there is no room. Returns how many
    /// threads the caller has to start.
    int lookAfterLine();
    bool hasWaiting() const;
    /// Drops the connection that has been idle longest; false when there is none.
    bool dropLongestIdle();
    /// A thread that was to be started exists, or, with null, could not be had.
    void started(HttpdThread *thread);
    /// The thread's object is being destroyed.
    void forget(HttpdThread *thread);
    /// All thread objects there are.
    QVector<HttpdThread *> threads() const;

    /// Ends the thread's connection, if it had one, and waits for the next. False when the thread
    /// is no longer needed. The thread itself.
    bool next(HttpdThread &thread);
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

    bool hasShareLeft(quint32 peer) const;
    bool mayServe(quint32 peer) const;
    bool takeFor(HttpdThread &thread);
    void leave(HttpdThread &thread);
    int callThreads();
    void callResting();
    void makeRoom();
    bool dropLongestIdle(const quint32 *peer);

    mutable std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_call;
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
    int m_called = 0;    ///< threads on their way to a connection: woken, or being started
    quint64 m_taken = 0; ///< connections that were given to a thread so far
    quint64 m_takenAtLook = 0;
    bool m_stopped = false;
};
