#include "net/HttpdServer.h"

#include "net/HttpdThread.h"
#include "net/SocketPlatform.h"

#include <algorithm>

namespace {

/// What one connection opens: the socket, the handle on it, the thread's wake-up, a file.
constexpr qint64 descriptorsPerConnection = 4;

/// What is left to the rest of the program.
constexpr qint64 descriptorsElsewhere = 256;

/// A new connection is served only when this many descriptors are free, for it and for the threads
/// that are just starting: one that cannot get its wake-up descriptor ends the whole process.
constexpr int descriptorReserve = 32;

/// Connections taken at the limit while idle ones are made to end; several at a time, as each end
/// takes the time of a few thread switches.
constexpr int maxWaiting = 32;

/// Connections that the system holds until they are accepted.
constexpr int backlog = 2048;

/// QTcpServer's own default; see pause().
constexpr int normalPendingConnections = 30;

/// Milliseconds until the server tries again to make room or, when the system refused, to accept.
constexpr int retryInterval = 50;

/// A connection is not dropped as idle sooner than this after its last activity, in milliseconds:
/// when many telephones start at once, each must get the time to send its request.
constexpr qint64 idleGrace = 250;

} // namespace

HttpdServer::HttpdServer(ProvisioningSource &source, const QString &baseDir)
    : m_source(source)
    , m_baseDir(baseDir)
    , m_limit(connectionLimit(SocketPlatform::raiseDescriptorLimit(
          2 * (descriptorsElsewhere + maxConnections * descriptorsPerConnection))))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &HttpdServer::serveWaiting);
    connect(this, &QTcpServer::acceptError, this, &HttpdServer::onAcceptError);
}

HttpdServer::~HttpdServer()
{
    shutDown();
    const QVector<HttpdThread *> threads = m_threads;
    for (HttpdThread *thread : threads) {
        disconnect(thread, nullptr, this, nullptr);
        delete thread;
    }
}

bool HttpdServer::listen(const QHostAddress &address, quint16 port)
{
    if (!SocketPlatform::listenAlone(*this, address, port))
        return false;
    resume();
    SocketPlatform::setBacklog(socketDescriptor(), backlog);
    return true;
}

void HttpdServer::shutDown()
{
    close();
    m_timer.stop();
    closeWaiting();
    for (HttpdThread *thread : qAsConst(m_threads))
        thread->drop();
}

int HttpdServer::connectionLimit(qint64 descriptors)
{
    const qint64 fitting = (descriptors - descriptorsElsewhere) / descriptorsPerConnection;
    return static_cast<int>(qBound<qint64>(1, fitting, maxConnections));
}

void HttpdServer::incomingConnection(qintptr socketDescriptor)
{
    // One connection in each turn of the event loop, and the next only when that is wanted. Qt
    // would go on until there are no more, and its socket remembers that as its error for good:
    // later it would not report a lack of descriptors, but try to accept again without a pause.
    pause();
    m_waiting.enqueue(socketDescriptor);
    m_timer.start(0);
}

/// Gives threads to as many waiting connections as there is room for, and makes room for the rest.
void HttpdServer::serveWaiting()
{
    while (!m_waiting.isEmpty() && m_threads.size() < m_limit && hasDescriptors())
        startThread(m_waiting.dequeue());
    makeRoom();
    if (m_waiting.isEmpty() || (m_waiting.size() < maxWaiting && hasDescriptors()))
        resume();
}

bool HttpdServer::hasDescriptors() const
{
    return SocketPlatform::canOpen(descriptorReserve);
}

void HttpdServer::startThread(qintptr socketDescriptor)
{
    auto *thread = new HttpdThread(socketDescriptor, m_source, m_baseDir, m_locks);
    if (!thread->isUsable()) {
        delete thread;
        return;
    }
    m_threads.append(thread);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    // Once more, for what Qt does on the thread after run().
    connect(thread, &QThread::finished, thread, &HttpdThread::markEnded, Qt::DirectConnection);
    connect(thread, &HttpdThread::singleRequest, this, &HttpdServer::requestServer);
    connect(thread, &QObject::destroyed, this, [this, thread] { onThreadGone(thread); });
    thread->start(QThread::InheritPriority);
    if (!thread->isRunning() && !thread->isFinished())
        delete thread; // the system has no room for another thread
}

/// Sees to it that as many connections are ending as are waiting. When there are not enough that
/// have been idle for long enough, the timer looks again.
void HttpdServer::makeRoom()
{
    const auto ending = std::count_if(m_threads.cbegin(), m_threads.cend(),
                                      [](const HttpdThread *thread) { return thread->isEnding(); });
    for (auto missing = m_waiting.size() - ending; missing > 0; --missing) {
        if (!dropLongestIdle()) {
            m_timer.start(retryInterval);
            return;
        }
    }
}

bool HttpdServer::dropLongestIdle()
{
    HttpdThread *longestIdle = nullptr;
    qint64 longestTime = idleGrace;
    for (HttpdThread *thread : qAsConst(m_threads)) {
        const qint64 time = thread->idleTime();
        if (time >= longestTime && !thread->isEnding() && !thread->isBusy()) {
            longestIdle = thread;
            longestTime = time + 1;
        }
    }
    if (longestIdle)
        longestIdle->drop();
    return longestIdle != nullptr;
}

/// Accepts nothing more until resume(). Unlike pauseAccepting(), it also ends the server's loop
/// over the connections that wait already.
void HttpdServer::pause()
{
    setMaxPendingConnections(0);
}

void HttpdServer::resume()
{
    setMaxPendingConnections(normalPendingConnections);
    resumeAccepting();
}

void HttpdServer::onThreadGone(HttpdThread *thread)
{
    m_threads.removeOne(thread);
    if (!m_waiting.isEmpty())
        serveWaiting();
}

void HttpdServer::onAcceptError()
{
    // Trying again at once would only fail again, for ever.
    pause();
    dropLongestIdle();
    m_timer.start(retryInterval);
}

void HttpdServer::closeWaiting()
{
    while (!m_waiting.isEmpty())
        SocketPlatform::close(m_waiting.dequeue());
}
