#include "net/HttpdThread.h"

#include "model/MacAddress.h"
#include "model/PhoneFamily.h"
#include "model/ProvisioningSource.h"
#include "net/ConnectionPool.h"
#include "net/DocumentFolder.h"
#include "net/HttpRequest.h"
#include "net/NoEventDispatcher.h"
#include "net/PrintableText.h"
#include "net/SocketPlatform.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTextStream>

#include <array>
#include <chrono>
#include <memory>
#include <utility>

namespace {

/// A client that connects and says nothing is dropped after this time.
constexpr int firstDataTimeout = 30000;

/// How long to wait, after the first data, for the rest of a request that comes in segments.
constexpr int restTimeout = 250;

/// How long a client may take to fetch its answer.
constexpr int disconnectTimeout = 30000;

/// A request keeps at most this much memory; a phone sends a few hundred bytes.
constexpr qint64 maxRequestSize = qint64(64) * 1024;

/// A line is read up to this size (with its terminator); the rest counts as the next line.
constexpr int lineBufferSize = 1024;

/// The most characters of a request's target, and of its product, that the log keeps.
constexpr int longestKept = 300;

qint64 steadyMilliseconds()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

/// Unbuffered, as all of it is read at once.
bool openToRead(QFile &file)
{
    return file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool isEmptyLine(const QString &line)
{
    return line == QLatin1String("\r\n") || line == QLatin1String("\n");
}

QByteArray makeAnswerHeader()
{
    // Phones expect English names, whatever the system's language is.
    const QString now = QLocale::c().toString(QDateTime::currentDateTime(),
                                              QStringLiteral("ddd MMM d HH:mm:ss yyyy"));
    return QStringLiteral("HTTP/1.0 200 Ok\r\n"
                          "Server: Fortune/1.0\r\n"
                          "Last-Modified: %1\r\n"
                          "Accept-Ranges: bytes\r\n"
                          "Content-Type: application/xml\r\n"
                          "\r\n")
        .arg(now)
        .toUtf8();
}

} // namespace

HttpdThread::HttpdThread(ConnectionPool &pool, ProvisioningSource &source, const QString &baseDir,
                         DocumentFolder &folder)
    : m_mutex(new QMutex)
    , m_baseDir(baseDir)
    , m_pool(pool)
    , m_source(source)
    , m_folder(folder)
{
    // Registered under the name that the signal declares, so that the signal can be queued.
    qRegisterMetaType<QTcpSocket::SocketError>("QTcpSocket::SocketError");
    setEventDispatcher(new NoEventDispatcher); // the thread takes ownership
}

HttpdThread::~HttpdThread()
{
    m_pool.forget(this);
    wait();
    Q_ASSERT(m_state == State::Ended || m_state == State::Resting); // Resting: it never ran
    delete m_mutex;
}

void HttpdThread::markEnded()
{
    m_state = State::Ended;
}

void HttpdThread::take(const AcceptedConnection &connection)
{
    m_socketDescriptor = connection.descriptor;
    m_peer = connection.peer;
    touch();
    m_state = State::Idle;
}

void HttpdThread::rest()
{
    m_state = State::Resting;
}

bool HttpdThread::drop()
{
    if (!change(State::Idle, State::Dropped) && !change(State::Busy, State::Dropped))
        return false;
    m_connection.breakOff();
    return true;
}

bool HttpdThread::evict()
{
    if (!isIdle() || !change(State::Idle, State::Dropped))
        return false;
    m_connection.breakOff();
    return true;
}

bool HttpdThread::isIdle() const
{
    return m_state == State::Idle && m_connection.hasNoInput();
}

qint64 HttpdThread::idleTime() const
{
    return steadyMilliseconds() - m_lastActivity;
}

/// False when another thread was faster.
bool HttpdThread::change(State from, State to)
{
    return m_state.compare_exchange_strong(from, to);
}

void HttpdThread::touch()
{
    m_lastActivity = steadyMilliseconds();
}

void HttpdThread::run()
{
    using Next = ConnectionPool::Next;
    for (Next next = m_pool.next(*this); next != Next::End; next = m_pool.next(*this)) {
        if (next == Next::Connection)
            serveConnection();
        m_folder.keepBound([this] { return m_source.deviceCount(); },
                           [this] { return m_pool.isStopped(); });
    }
}

void HttpdThread::serveConnection()
{
    const auto socket = std::make_unique<QTcpSocket>();
    m_socket = socket.get();
    m_end = RequestEnd();
    m_end.peer = m_peer;
    m_socket->setReadBufferSize(maxRequestSize);
    if (m_socket->setSocketDescriptor(m_socketDescriptor, QAbstractSocket::ConnectedState,
                                      QIODevice::ReadWrite)) {
        const auto onWritten = [this](qint64 bytes) {
            m_end.bytes += bytes;
            touch();
        };
        connect(m_socket, &QTcpSocket::bytesWritten, this, onWritten, Qt::DirectConnection);
        if (waitFor(firstDataTimeout, &QTcpSocket::waitForReadyRead))
            getMessage();
        else if (!isDropped())
            m_end.outcome = RequestOutcome::NoRequest;
        endStream();
        m_socket->abort();
        m_connection.finish();
    } else {
        emit error(m_socket->error());
        SocketPlatform::close(m_socketDescriptor);
    }
    tellEnd();
    m_socket = nullptr;
}

void HttpdThread::tellEnd()
{
    if (!m_endListener)
        return;
    if (m_end.outcome == RequestOutcome::Dropped && m_pool.isStopped())
        m_end.outcome = RequestOutcome::Closed;
    m_end.time = RequestEnd::now();
    m_endListener(m_end);
}

/// Waits for the client with one of the socket's own waiting functions, and gives up when the
/// connection is cut. Meanwhile another connection may be worked on.
template <typename Condition>
bool HttpdThread::waitFor(int timeout, Condition condition)
{
    const QDeadlineTimer deadline(timeout);
    bool done = (m_socket->*condition)(0);
    // A thread that drops the connection from here on finds the handle and wakes this thread.
    if (done || !beginWait())
        return done;
    do {
        const qint64 slice = qMin<qint64>(deadline.remainingTime(), SocketPlatform::longestWait());
        done = (m_socket->*condition)(static_cast<int>(slice));
    } while (!done && !isDropped() && m_socket->state() != QAbstractSocket::UnconnectedState &&
             !deadline.hasExpired());
    m_pool.endWait();
    return done;
}

/// False when there is no client to wait for, or no handle by which others can end the wait.
bool HttpdThread::beginWait()
{
    const qintptr descriptor = m_socket->socketDescriptor();
    if (descriptor < 0 || !m_connection.open(descriptor) || isDropped())
        return false;
    m_pool.beginWait();
    return true;
}

/// Waits for more of a request whose beginning has come. False when the time is over, or there is
/// no more.
bool HttpdThread::waitForRest(const QDeadlineTimer &deadline)
{
    const std::chrono::milliseconds time(deadline.remainingTime());
    if (SocketPlatform::hasInput(m_socketDescriptor))
        return SocketPlatform::waitForMoreInput(m_socketDescriptor, time);
    if (!beginWait())
        return false;
    const bool more = SocketPlatform::waitForMoreInput(m_socketDescriptor, time);
    m_pool.endWait();
    return more;
}

HttpRequest HttpdThread::readRequest()
{
    HttpRequest request;
    qint64 size = 0;
    bool complete = false;
    bool lineStart = true;
    const QDeadlineTimer deadline(restTimeout);
    do {
        touch();
        while (size < maxRequestSize && m_socket->canReadLine()) {
            std::array<char, lineBufferSize> buffer;
            const qint64 length =
                m_socket->readLine(buffer.data(), static_cast<qint64>(buffer.size()));
            if (length <= 0)
                return request;
            size += length;
            // With its length, so that a NUL does not end the line.
            const QString line = QString::fromLatin1(buffer.data(), static_cast<int>(length));
            complete = complete || (lineStart && isEmptyLine(line));
            lineStart = line.endsWith(QLatin1Char('\n'));
            request.addLine(line);
        }
    } while (!complete && size + m_socket->bytesAvailable() < maxRequestSize &&
             !deadline.hasExpired() && waitForRest(deadline) &&
             m_socket->waitForReadyRead(static_cast<int>(deadline.remainingTime())));
    return request;
}

void HttpdThread::getMessage()
{
    // Busy for a quarter of a second at most, unless a document is made.
    if (!change(State::Idle, State::Busy))
        return;
    const HttpRequest request = readRequest();
    if (isDropped())
        return;
    m_mac = request.mac;
    m_end.asked = (request.target.isEmpty() ? request.fileName : request.target).left(longestKept);
    m_end.product = request.product.left(longestKept);
    if (request.namesDocument()) {
        m_end.mac = m_mac;
        emit singleRequest(tr("One device request cfg.") + QLatin1Char('\n') + tr("Product:") +
                           printableText(request.product) + QLatin1Char('\n') + tr("FileName:") +
                           printableText(request.fileName));
    }
    if (request.hasSafeFileName())
        serveRequest(request.fileName, request.product);
    else
        m_end.outcome = RequestOutcome::RefusedName;
}

void HttpdThread::serveRequest(const QString &fileName, const QString &product)
{
    const QMutexLocker locker(m_mutex);
    if (!fileName.contains(QLatin1String("xml")) || m_mac.isEmpty()) {
        m_end.outcome = RequestOutcome::NoName;
        m_folder.make();
        return;
    }

    m_source.saveList();
    if (!m_pool.beginWork(*this))
        return;
    // Phones of two families may ask for one name at once: the file must not change between being
    // written and being read for this phone.
    std::unique_lock<std::mutex> nameLock = m_folder.lock(fileName);
    QFile file(m_folder.path() + QLatin1Char('/') + fileName);
    const bool dropped = isDropped();
    const bool written = !dropped && openDocument(file, fileName, product);
    m_pool.endWork(*this);
    if (written)
        sendFile(file, std::move(nameLock));
    else if (!dropped)
        m_end.outcome = whyNotWritten();
}

RequestOutcome HttpdThread::whyNotWritten() const
{
    if (!m_source.hasDevice(m_mac))
        return RequestOutcome::NotListed;
    // Documents are named in lower case.
    return bareMac(m_mac) == m_mac ? RequestOutcome::NotWritten : RequestOutcome::NoName;
}

/// Opens the document, after writing it unless it is current. Called under the name's lock. False
/// when it cannot be written.
bool HttpdThread::openDocument(QFile &file, const QString &fileName, const QString &product)
{
    const DocumentFolder::Origin origin{familyOfWord(product).document, m_source.listVersion()};
    const bool isThere = openToRead(file);
    if (isThere && m_folder.isCurrent(fileName, origin, FileLook(file)))
        return true;
    file.close();
    m_folder.make();
    if (!m_source.exportDevices(origin.type, QStringLiteral("UTF-8"), fileName, m_folder.path()))
        return false;
    if (openToRead(file))
        m_folder.written(fileName, origin, FileLook(file), !isThere);
    return true;
}

/// Reads the file, releases its name and sends the content: no thread waits for a slow client.
void HttpdThread::sendFile(QFile &file, std::unique_lock<std::mutex> nameLock)
{
    const qint64 size = file.isOpen() ? file.size() : 0;
    const QString body = QString::fromUtf8(file.isOpen() ? file.read(size) : QByteArray());
    const bool whole = file.isOpen() && file.error() == QFile::NoError;
    file.close();
    nameLock.unlock();
    if (!whole) {
        m_end.outcome = RequestOutcome::NotWritten;
        closeSocket();
        return;
    }

    touch();
    if (!change(State::Busy, State::Idle))
        return;
    const QByteArray answer = answerHeader() + body.toUtf8();
    m_socket->write(answer);
    m_socket->flush();
    closeSocket();
    if (m_end.bytes == answer.size())
        m_end.outcome = RequestOutcome::Sent;
    else if (!isDropped())
        m_end.outcome = RequestOutcome::GaveUp;
    // Direct: the socket belongs to this thread.
    connect(m_socket, &QTcpSocket::bytesWritten, this, &HttpdThread::disCurrentSocket,
            Qt::DirectConnection);
}

/// Made once a second: for the local time, the system reads its files under one lock for all.
QByteArray HttpdThread::answerHeader()
{
    const qint64 second = QDateTime::currentSecsSinceEpoch();
    if (second != m_headerSecond) {
        m_header = makeAnswerHeader();
        m_headerSecond = second;
    }
    return m_header;
}

void HttpdThread::closeSocket()
{
    endStream();
    m_socket->close();
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        waitFor(disconnectTimeout, &QTcpSocket::waitForDisconnected);
}

/// To be called while the socket has its descriptor. When not all is sent yet, the handle is kept
/// to end the stream later.
void HttpdThread::endStream()
{
    const qintptr descriptor = m_socket->socketDescriptor();
    if (descriptor < 0)
        return;
    if (m_socket->bytesToWrite() == 0)
        SocketPlatform::endStream(descriptor);
    else
        m_connection.open(descriptor);
}

void HttpdThread::disCurrentSocket(qint64 bytes)
{
    Q_UNUSED(bytes)
    if (m_socket)
        m_socket->disconnectFromHost();
}
