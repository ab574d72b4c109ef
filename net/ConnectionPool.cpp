#include "net/ConnectionPool.h"

#include "net/HttpdThread.h"
#include "net/SocketPlatform.h"

#include <QHash>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using std::chrono::milliseconds;

/// Connections worked on at a time while none of them takes long. Measured: with sixteen, a storm
/// of requests takes a seventh longer.
constexpr int usualLevel = 4;

/// This many threads may rest forever; further ones end when they were not called for `restTime`.
constexpr int keptThreads = 4;
constexpr std::chrono::seconds restTime{3};

/// A connection is not dropped as idle sooner than this after its last activity, in milliseconds:
/// when many phones start at once, each must get the time to send its request.
constexpr qint64 idleGrace = 250;

/// How often the line is looked after; a fraction of what a phone would notice.
constexpr milliseconds lookInterval{5};

} // namespace

ConnectionPool::ConnectionPool(int limit, int maxWaiting)
    : m_limit(limit)
    , m_maxWaiting(maxWaiting)
    , m_level(std::min(usualLevel, limit))
{
}

void ConnectionPool::open(Entrance entrance)
{
    m_entrance = std::move(entrance);
}

bool ConnectionPool::hasShareLeft(quint32 peer) const
{
    const auto found = m_peers.find(peer);
    return found == m_peers.end() || found->second.served < peerShare;
}

/// False also when the next request of the address would only wait in beginWork().
bool ConnectionPool::mayServe(quint32 peer) const
{
    const auto found = m_peers.find(peer);
    return found == m_peers.end() ||
           (found->second.served < peerShare && found->second.working < peerWork);
}

int ConnectionPool::admit(const AcceptedConnection &connection)
{
    Lock lock(m_mutex);
    if (m_stopped) {
        lock.unlock();
        turnAway(connection);
        return 0;
    }
    m_line.add(connection);
    if (m_line.size() > m_maxWaiting && m_line.longest() > peerShare) {
        const AcceptedConnection superfluous = m_line.takeFromLongest();
        lock.unlock();
        turnAway(superfluous);
        lock.lock();
    }
    return callThreads();
}

/// To be called without the lock, as it runs a callback.
void ConnectionPool::turnAway(const AcceptedConnection &connection)
{
    SocketPlatform::close(connection.descriptor);
    if (m_entrance.turnedAway)
        m_entrance.turnedAway(connection.peer);
}

/// An address with more than a share in the line makes room by losing a connection. Without room,
/// new connections wait in the system's backlog.
bool ConnectionPool::hasRoom() const
{
    return m_line.size() < m_maxWaiting || m_line.longest() > peerShare;
}

int ConnectionPool::lookAfterLine()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_isQuiet = m_taken == m_takenAtLook;
    m_takenAtLook = m_taken;
    if (m_isQuiet && m_line.has([this](quint32 peer) { return mayServe(peer); }))
        m_level = std::min(2 * m_level, m_limit);
    else if (m_level > usualLevel)
        m_level -= (m_level - usualLevel + 7) / 8;
    makeRoom();
    return callThreads();
}

bool ConnectionPool::needsDoor() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return !m_isWatched && hasRoom();
}

void ConnectionPool::restAtDoor()
{
    Lock lock(m_mutex);
    const bool isQuiet = m_isQuiet && m_line.isEmpty();
    if (isQuiet && m_isWatched) {
        m_doorRests = true;
        m_doorCall.wait(lock, [this] { return m_stopped || !m_doorRests; });
    } else if (isQuiet && m_working + onTheWay() == 0) {
        watch(lock);
    } else {
        m_doorCall.wait_for(lock, lookInterval, [this] { return m_stopped; });
    }
}

/// Calls as many resting threads as may work on the line. Returns how many more have to be started.
int ConnectionPool::callThreads()
{
    int wanted = std::min(m_level - m_working, m_line.size()) - onTheWay();
    for (; wanted > 0 && m_resting > m_called; --wanted) {
        ++m_called;
        m_call.notify_one();
    }
    const int missing = std::clamp(wanted, 0, m_limit - m_alive);
    m_starting += missing;
    m_alive += missing;
    return missing;
}

/// Calls one resting thread, if it may work on the line; starts none.
void ConnectionPool::callForLine()
{
    if (m_working + onTheWay() < m_level && m_line.size() > onTheWay() && m_resting > m_called) {
        ++m_called;
        m_call.notify_one();
    }
}

/// Calls a thread to the entrance when none is there or about to come.
void ConnectionPool::callForEntrance()
{
    if (!m_isWatched && onTheWay() == 0 && m_working < m_level && m_resting > 0) {
        ++m_called;
        m_call.notify_one();
    }
}

void ConnectionPool::started(HttpdThread *thread)
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    --m_starting;
    if (thread) {
        m_threads.append(thread);
        if (m_stopped)
            thread->drop(); // it may have taken a connection before it was known here
    } else {
        --m_alive;
    }
}

void ConnectionPool::forget(HttpdThread *thread)
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_threads.removeOne(thread);
}

QVector<HttpdThread *> ConnectionPool::threads() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_threads;
}

ConnectionPool::Next ConnectionPool::next(HttpdThread &thread)
{
    Lock lock(m_mutex);
    if (thread.hasConnection())
        leave(thread);
    while (!m_stopped) {
        if (takeFor(thread)) {
            callForLine();
            return Next::Connection;
        }
        if (std::exchange(m_hasErrand, false))
            return Next::Errand;
        if (!m_line.isEmpty())
            callDoor();
        if (!goToEntrance(lock) && !rest(lock) && !m_hasErrand)
            break;
    }
    --m_alive;
    return Next::End;
}

int ConnectionPool::callForErrand()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_hasErrand = !m_stopped;
    if (m_stopped || m_working + m_starting + m_called > 0)
        return 0; // a working or called thread does the errand
    if (m_resting > 0) {
        ++m_called;
        m_call.notify_one();
        return 0;
    }
    if (m_alive == m_limit)
        return 0; // a waiting thread does it after its wait
    ++m_starting;
    ++m_alive;
    return 1;
}

/// Accepts a connection, and waits for one unless another thread does. False if another thread
/// waits, enough is worked on, or nothing can be accepted.
bool ConnectionPool::goToEntrance(Lock &lock)
{
    using SocketPlatform::Accept;
    if (m_working + onTheWay() >= m_level || !hasRoom())
        return false;
    const Accept result = accept(lock);
    // While the lock was released, the service may have ended or the line grown.
    if (m_stopped || m_line.has([this](quint32 peer) { return mayServe(peer); }))
        return true;
    if (result == Accept::NoneWaits && !m_isWatched) {
        watch(lock);
        const bool more = accept(lock) == Accept::Done && m_entrance.wait(milliseconds(0));
        callDoor();
        if (more)
            callForEntrance();
        return true;
    }
    return result == Accept::Done; // the new one's address may have to wait
}

void ConnectionPool::callDoor()
{
    if (std::exchange(m_doorRests, false))
        m_doorCall.notify_one();
}

SocketPlatform::Accept ConnectionPool::accept(Lock &lock)
{
    ++m_accepting;
    lock.unlock();
    const SocketPlatform::Accept result = m_entrance.accept();
    lock.lock();
    --m_accepting;
    return result;
}

/// Waits at the entrance until a connection comes or the service ends.
void ConnectionPool::watch(Lock &lock)
{
    m_isWatched = true;
    do {
        lock.unlock();
        const bool hasCome = m_entrance.wait(milliseconds(SocketPlatform::longestWait()));
        lock.lock();
        if (hasCome)
            break;
    } while (!m_stopped);
    m_isWatched = false;
}

/// Waits until a thread is called. False when none was for so long that this one may end.
bool ConnectionPool::rest(Lock &lock)
{
    // What the waits return does not tell: the time may end just as a call comes.
    bool mayEnd = false;
    ++m_resting;
    while (m_called == 0 && !m_stopped && !mayEnd) {
        // Threads may come to rest, or leave, during the wait.
        if (m_resting <= keptThreads)
            m_call.wait(lock);
        else if (m_call.wait_for(lock, restTime) == std::cv_status::timeout)
            mayEnd = m_resting > keptThreads;
    }
    --m_resting;
    if (m_called > 0)
        --m_called;
    else if (mayEnd && m_line.isEmpty())
        return false;
    return true;
}

bool ConnectionPool::takeFor(HttpdThread &thread)
{
    if (m_working >= m_level)
        return false;
    const auto connection = m_line.take([this](quint32 peer) { return mayServe(peer); });
    if (!connection)
        return false;
    ++m_peers[connection->peer].served;
    ++m_served;
    ++m_working;
    ++m_taken;
    thread.take(*connection);
    return true;
}

void ConnectionPool::leave(HttpdThread &thread)
{
    const auto peer = m_peers.find(thread.peer());
    if (--peer->second.served == 0)
        m_peers.erase(peer);
    --m_served;
    --m_working;
    thread.rest();
}

void ConnectionPool::beginWait()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    --m_working;
    callForLine();
    callForEntrance();
}

void ConnectionPool::endWait()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    ++m_working;
}

bool ConnectionPool::beginWork(const HttpdThread &thread)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    Peer &peer = m_peers[thread.peer()];
    if (peer.working >= peerWork) {
        --m_working;
        callForLine();
        callForEntrance();
        peer.workDone.wait(lock, [&] { return m_stopped || peer.working < peerWork; });
        ++m_working;
    }
    if (m_stopped)
        return false;
    ++peer.working;
    return true;
}

void ConnectionPool::endWork(const HttpdThread &thread)
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    Peer &peer = m_peers[thread.peer()];
    --peer.working;
    peer.workDone.notify_one();
}

/// Drops idle connections until as many are ending as wait for room.
void ConnectionPool::makeRoom()
{
    QHash<quint32, int> leaving;
    int allLeaving = 0;
    for (const HttpdThread *thread : qAsConst(m_threads)) {
        if (thread->isDropped()) {
            ++leaving[thread->peer()];
            ++allLeaving;
        }
    }
    if (m_served >= m_limit) {
        for (int missing = m_line.size() - allLeaving; missing > 0; --missing) {
            if (!dropLongestIdle(nullptr))
                return;
        }
        return;
    }
    for (const quint32 peer : m_line.peers()) {
        int missing = hasShareLeft(peer) ? 0 : m_line.waiting(peer) - leaving.value(peer);
        while (missing > 0 && dropLongestIdle(&peer))
            --missing;
    }
}

bool ConnectionPool::dropLongestIdle()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return dropLongestIdle(nullptr);
}

/// Among those of this address or, without an address, among all.
bool ConnectionPool::dropLongestIdle(const quint32 *peer)
{
    HttpdThread *longestIdle = nullptr;
    qint64 longestTime = idleGrace;
    for (HttpdThread *thread : qAsConst(m_threads)) {
        if (peer && thread->peer() != *peer)
            continue;
        const qint64 time = thread->idleTime();
        if (time >= longestTime && thread->isIdle()) {
            longestIdle = thread;
            longestTime = time + 1;
        }
    }
    return longestIdle && longestIdle->evict();
}

void ConnectionPool::stop()
{
    std::vector<AcceptedConnection> waiting;
    Lock lock(m_mutex);
    m_stopped = true;
    while (!m_line.isEmpty())
        waiting.push_back(m_line.takeFromLongest());
    for (HttpdThread *thread : qAsConst(m_threads))
        thread->drop();
    m_call.notify_all();
    m_doorCall.notify_all();
    for (auto &peer : m_peers)
        peer.second.workDone.notify_all();
    lock.unlock();
    for (const AcceptedConnection &connection : waiting)
        turnAway(connection);
}

bool ConnectionPool::isStopped() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_stopped;
}
