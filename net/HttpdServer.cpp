#include "net/HttpdServer.h"

#include "net/HttpdThread.h"
#include "net/SocketPlatform.h"

namespace {

/// What one connection opens: the socket, the handle on it, the thread's wake-up, a file.
constexpr qint64 descriptorsPerConnection = 4;

/// What is left to the rest of the program.
constexpr qint64 descriptorsElsewhere = 256;

/// Connections that the system holds until they are accepted.
constexpr int backlog = 512;

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
    m_retryTimer.setSingleShot(true);
    m_retryTimer.setInterval(retryInterval);
    connect(&m_retryTimer, &QTimer::timeout, this, &HttpdServer::onRetry);
    connect(this, &QTcpServer::acceptError, this, &HttpdServer::onAcceptError);
}

HttpdServer::~HttpdServer()
{
    shutDown();
    const QVector<HttpdThread *> threads = m_threads;
    for (HttpdThread *thread : threads) {
        disconnect(thread, nullptr, this, nullptr);
        thread->wait();
        delete thread;
    }
}

bool HttpdServer::listen(const QHostAddress &address, quint16 port)
{
    if (!QTcpServer::listen(address, port))
        return false;
    resume();
    SocketPlatform::setBacklog(socketDescriptor(), backlog);
    return true;
}

void HttpdServer::shutDown()
{
    close();
    m_retryTimer.stop();
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
    const bool room =
        m_threads.size() < m_limit && !SocketPlatform::descriptorsAreScarce(socketDescriptor);
    if (room && m_waiting.isEmpty()) {
        startThread(socketDescriptor);
        return;
    }
    pause();
    if (m_threads.isEmpty()) {
        // Others hold the descriptors: there is nothing here to wait for.
        SocketPlatform::close(socketDescriptor);
        m_retryTimer.start();
        return;
    }
    m_waiting.enqueue(socketDescriptor);
    makeRoom();
}

void HttpdServer::startThread(qintptr socketDescriptor)
{
    auto *thread = new HttpdThread(socketDescriptor, m_source, m_baseDir, m_locks);
    if (!thread->isUsable()) {
        delete thread;
        onAcceptError();
        return;
    }
    m_threads.append(thread);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    connect(thread, &HttpdThread::singleRequest, this, &HttpdServer::requestServer);
    connect(thread, &QObject::destroyed, this, [this, thread] { onThreadGone(thread); });
    thread->start(QThread::InheritPriority);
    if (!thread->isRunning() && !thread->isFinished())
        delete thread; // the system has no room for another thread
}

/// Drops the connection that has been idle longest, unless a thread is ending anyway. When none has
/// been idle long enough, the timer looks again.
void HttpdServer::makeRoom()
{
    HttpdThread *longestIdle = nullptr;
    qint64 longestTime = idleGrace;
    for (HttpdThread *thread : qAsConst(m_threads)) {
        if (thread->isEnding())
            return;
        const qint64 time = thread->idleTime();
        if (time >= longestTime && !thread->isBusy()) {
            longestIdle = thread;
            longestTime = time + 1;
        }
    }
    if (longestIdle)
        longestIdle->drop();
    else
        m_retryTimer.start();
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
    if (m_waiting.isEmpty())
        return;
    startThread(m_waiting.dequeue());
    if (m_waiting.isEmpty())
        resume();
    else
        makeRoom();
}

void HttpdServer::onAcceptError()
{
    // Trying again at once would only fail again, for ever.
    pause();
    makeRoom();
    m_retryTimer.start();
}

void HttpdServer::onRetry()
{
    if (m_waiting.isEmpty())
        resume();
    else
        makeRoom();
}

void HttpdServer::closeWaiting()
{
    while (!m_waiting.isEmpty())
        SocketPlatform::close(m_waiting.dequeue());
}
