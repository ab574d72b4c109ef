#include "net/HttpdServer.h"

#include "model/ProvisioningSource.h"
#include "net/HttpdDoor.h"
#include "net/HttpdThread.h"
#include "net/Listener.h"
#include "net/SocketPlatform.h"

#include <utility>

namespace {

/// The descriptors of one connection: the socket, the handle on it, a file.
constexpr qint64 descriptorsPerConnection = 3;

/// How many connections may wait for each one that is served; each has a descriptor.
constexpr int waitingPerConnection = 2;

/// The descriptors left to the rest of the program.
constexpr qint64 descriptorsElsewhere = 256;

/// Connections that the system holds until they are accepted.
constexpr int backlog = 2048;

/// Milliseconds for which reports are gathered: too short for a user to notice, long enough to
/// spare the event loop.
constexpr int reportInterval = 100;

/// The most reports kept while the GUI thread is busy; far more than anybody could read.
constexpr std::size_t maxReports = 40000;

qint64 descriptorsFor(int connections)
{
    return descriptorsElsewhere + connections * (descriptorsPerConnection + waitingPerConnection);
}

int affordableConnections()
{
    return HttpdServer::connectionLimit(
        SocketPlatform::raiseDescriptorLimit(2 * descriptorsFor(HttpdServer::maxConnections)));
}

} // namespace

HttpdServer::HttpdServer(ProvisioningSource &source, const QString &baseDir)
    : m_source(source)
    , m_baseDir(baseDir)
    , m_folder(baseDir)
    , m_pool(affordableConnections(), waitingPerConnection * affordableConnections())
{
    m_reportTimer.setSingleShot(true);
    m_reportTimer.setInterval(reportInterval);
    connect(&m_reportTimer, &QTimer::timeout, this, &HttpdServer::emitReports);
}

HttpdServer::~HttpdServer()
{
    shutDown();
    m_door.reset();
    // A thread that is waited for here may have started another one just before its end.
    for (auto threads = m_pool.threads(); !threads.isEmpty(); threads = m_pool.threads()) {
        for (HttpdThread *const thread : qAsConst(threads)) {
            disconnect(thread, nullptr, this, nullptr);
            delete thread;
        }
    }
    emitReports();
}

bool HttpdServer::listen(const QHostAddress &address, quint16 port)
{
    if (m_door || !SocketPlatform::listenAlone(*this, address, port, backlog))
        return false;
    pauseAccepting(); // the pool's threads and the door accept
    m_listener = std::make_unique<Listener>(socketDescriptor());
    if (!m_listener->isUsable()) {
        m_listener.reset();
        close();
        return false;
    }
    m_pool.open({[this] { return acceptConnection(); },
                 [this](std::chrono::milliseconds time) { return m_listener->wait(time); },
                 [this](quint32 peer) { onTurnedAway(peer); }});
    HttpdDoor::Calls calls;
    calls.lookAfterLine = [this] { startThreads(m_pool.lookAfterLine()); };
    calls.mayAccept = [this] { return m_pool.needsDoor(); };
    calls.accept = [this] { return acceptConnection(); };
    calls.shortage = [this] { m_pool.dropLongestIdle(); };
    calls.rest = [this] { m_pool.restAtDoor(); };
    m_door = std::make_unique<HttpdDoor>(std::move(calls));
    m_door->start();
    return true;
}

void HttpdServer::shutDown()
{
    if (m_door)
        m_door->stop();
    m_pool.stop();
    if (m_listener)
        m_listener->close();
    close();
}

void HttpdServer::clearDocuments()
{
    m_folder.clear();
    if (m_listener)
        startThreads(m_pool.callForErrand());
}

/// On any thread.
SocketPlatform::Accept HttpdServer::acceptConnection()
{
    std::intptr_t descriptor = -1;
    const SocketPlatform::Accept result = m_listener->accept(descriptor);
    if (result == SocketPlatform::Accept::Done)
        incomingConnection(descriptor);
    return result;
}

int HttpdServer::connectionLimit(qint64 descriptors)
{
    const qint64 fitting =
        (descriptors - descriptorsElsewhere) / (descriptorsPerConnection + waitingPerConnection);
    return static_cast<int>(qBound<qint64>(1, fitting, maxConnections));
}

void HttpdServer::incomingConnection(qintptr socketDescriptor)
{
    startThreads(m_pool.admit({socketDescriptor, SocketPlatform::peerAddress(socketDescriptor)}));
}

void HttpdServer::startThreads(int count)
{
    for (; count > 0; --count)
        m_pool.started(startThread());
}

/// Null when the system cannot start another thread.
HttpdThread *HttpdServer::startThread()
{
    auto *thread = new HttpdThread(m_pool, m_source, m_baseDir, m_folder);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    // Connected after deleteLater(), so that it also publishes what Qt does for that.
    connect(thread, &QThread::finished, thread, &HttpdThread::markEnded, Qt::DirectConnection);
    connect(
        thread, &HttpdThread::singleRequest, this,
        [this](const QString &report) { addReport(report); }, Qt::DirectConnection);
    thread->setEndListener([this](const RequestEnd &request) { onEnd(request); });
    thread->moveToThread(this->thread());
    thread->start(QThread::InheritPriority);
    if (thread->isRunning() || thread->isFinished())
        return thread;
    QMetaObject::invokeMethod(
        this, [thread] { delete thread; }, Qt::QueuedConnection);
    return nullptr;
}

/// On any thread.
void HttpdServer::onTurnedAway(quint32 peer)
{
    RequestEnd end;
    end.time = RequestEnd::now();
    end.peer = peer;
    end.outcome = m_pool.isStopped() ? RequestOutcome::Closed : RequestOutcome::TurnedAway;
    m_source.requestEnded(end);
}

/// On a connection thread. Reports the end only of a request that was reported to the user.
void HttpdServer::onEnd(const RequestEnd &request)
{
    m_source.requestEnded(request);
    if (!request.mac.isEmpty())
        addReport(request);
}

/// On a connection thread.
void HttpdServer::addReport(Report report)
{
    const std::lock_guard<std::mutex> guard(m_reportMutex);
    if (m_reports.size() >= maxReports)
        m_reports.pop_front();
    m_reports.push_back(std::move(report));
    if (m_reports.size() == 1)
        QMetaObject::invokeMethod(this, "emitSoon", Qt::QueuedConnection);
}

/// Emits the reports at once, or later if some have been emitted just now.
void HttpdServer::emitSoon()
{
    if (m_reportTimer.isActive())
        return;
    emitReports();
    m_reportTimer.start();
}

void HttpdServer::emitReports()
{
    std::deque<Report> reports;
    {
        const std::lock_guard<std::mutex> guard(m_reportMutex);
        reports.swap(m_reports);
    }
    for (const Report &report : reports) {
        if (const auto *const request = std::get_if<RequestEnd>(&report))
            emit requestEnded(*request);
        else
            emit requestServer(std::get<QString>(report));
    }
}
