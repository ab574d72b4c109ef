#include "net/HttpdThread.h"

#include "model/ExportType.h"
#include "model/ProvisioningSource.h"
#include "net/FileNameLocks.h"
#include "net/HttpRequest.h"
#include "net/SocketPlatform.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTextStream>

#include <array>
#include <chrono>

namespace {

/// A client that connects and says nothing is dropped after this time.
constexpr int firstDataTimeout = 30000;

/// How long to wait, after the first data, for the rest of a request that comes in segments.
constexpr int restTimeout = 250;

/// How long a client may take to fetch its answer.
constexpr int disconnectTimeout = 30000;

/// A request keeps at most this much memory; a telephone sends a few hundred bytes.
constexpr qint64 maxRequestSize = qint64(64) * 1024;

/// One line is read up to this size (with its terminator), the rest counts as the next line.
constexpr int lineBufferSize = 1024;

qint64 steadyMilliseconds()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

bool isEmptyLine(const QString &line)
{
    return line == QLatin1String("\r\n") || line == QLatin1String("\n");
}

/// Makes the folder, for its owner only: the documents hold passwords.
void makePrivateFolder(const QString &path)
{
    if (QDir().mkdir(path))
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString answerHeader()
{
    // Telephones expect English names, whatever language the system speaks.
    const QString now = QLocale::c().toString(QDateTime::currentDateTime(),
                                              QStringLiteral("ddd MMM d HH:mm:ss yyyy"));
    return QStringLiteral("HTTP/1.0 200 Ok\r\n"
                          "Server: Fortune/1.0\r\n"
                          "Last-Modified: %1\r\n"
                          "Accept-Ranges: bytes\r\n"
                          "Content-Type: application/xml\r\n"
                          "\r\n")
        .arg(now);
}

} // namespace

HttpdThread::HttpdThread(qintptr socketDescriptor, ProvisioningSource &source,
                         const QString &baseDir, FileNameLocks &locks)
    : m_socketDescriptor(socketDescriptor)
    , m_mutex(new QMutex)
    , m_baseDir(baseDir)
    , m_source(source)
    , m_locks(locks)
    , m_connection(socketDescriptor)
    , m_lastActivity(steadyMilliseconds())
{
    // Under the name by which the signal declares it, so that it can be queued.
    qRegisterMetaType<QTcpSocket::SocketError>("QTcpSocket::SocketError");
}

HttpdThread::~HttpdThread()
{
    wait();
    if (!m_done)
        SocketPlatform::close(m_socketDescriptor);
    delete m_socket;
    delete m_mutex;
}

bool HttpdThread::isUsable() const
{
    return m_connection.isValid();
}

void HttpdThread::markEnded()
{
    m_done = true;
}

void HttpdThread::drop()
{
    m_dropped = true;
    m_connection.breakOff();
}

bool HttpdThread::isEnding() const
{
    return m_dropped || m_done;
}

bool HttpdThread::isBusy() const
{
    return m_busy || m_connection.hasInput();
}

qint64 HttpdThread::idleTime() const
{
    return steadyMilliseconds() - m_lastActivity;
}

void HttpdThread::touch()
{
    m_lastActivity = steadyMilliseconds();
}

void HttpdThread::run()
{
    m_socket = new QTcpSocket;
    m_socket->setReadBufferSize(maxRequestSize);
    if (m_socket->setSocketDescriptor(m_socketDescriptor, QAbstractSocket::ConnectedState,
                                      QIODevice::ReadWrite)) {
        connect(
            m_socket, &QTcpSocket::bytesWritten, this, [this] { touch(); }, Qt::DirectConnection);
        if (waitFor(firstDataTimeout, &QTcpSocket::waitForReadyRead))
            getMessage();
    } else {
        emit error(m_socket->error());
        SocketPlatform::close(m_socketDescriptor);
    }
    // Closed here and not in the destructor: a socket is to be closed on its own thread.
    m_socket->abort();
    m_connection.finish();
    markEnded();
}

/// Waits with one of the socket's own waiting functions, and gives up when the connection is cut.
template <typename Condition>
bool HttpdThread::waitFor(int timeout, Condition condition)
{
    const QDeadlineTimer deadline(timeout);
    do {
        const qint64 slice = qMin<qint64>(deadline.remainingTime(), SocketPlatform::longestWait());
        if ((m_socket->*condition)(static_cast<int>(slice)))
            return true;
    } while (!m_dropped && m_socket->state() != QAbstractSocket::UnconnectedState &&
             !deadline.hasExpired());
    return false;
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
            // With its length, so that a NUL stays visible.
            const QString line = QString::fromLatin1(buffer.data(), static_cast<int>(length));
            complete = complete || (lineStart && isEmptyLine(line));
            lineStart = line.endsWith(QLatin1Char('\n'));
            request.addLine(line);
        }
    } while (!complete && size + m_socket->bytesAvailable() < maxRequestSize &&
             !deadline.hasExpired() &&
             SocketPlatform::waitForMoreInput(
                 m_socketDescriptor, std::chrono::milliseconds(deadline.remainingTime())) &&
             m_socket->waitForReadyRead(static_cast<int>(deadline.remainingTime())));
    return request;
}

void HttpdThread::getMessage()
{
    m_busy = true; // for a quarter of a second at most, unless a document is made
    const HttpRequest request = readRequest();
    if (m_dropped)
        return;
    m_mac = request.mac;
    if (request.namesDocument()) {
        emit singleRequest(tr("One device request cfg.") + QLatin1Char('\n') + tr("Product:") +
                           request.product + QLatin1Char('\n') + tr("FileName:") +
                           request.fileName);
    }
    if (request.hasSafeFileName())
        serveRequest(request.fileName, request.product);
    m_busy = false;
}

void HttpdThread::serveRequest(const QString &fileName, const QString &product)
{
    const QMutexLocker locker(m_mutex);
    const QString folder = m_baseDir + QLatin1String("HTTPD/MACCFG");
    if (!QDir(folder).exists()) {
        QDir().mkpath(m_baseDir);
        makePrivateFolder(m_baseDir + QLatin1String("HTTPD"));
        makePrivateFolder(folder);
    }
    if (!fileName.contains(QLatin1String("xml")) || m_mac.isEmpty())
        return;

    m_source.saveList();
    // Two families may ask for one name at once: the file must not change between being written
    // for this telephone and being read for it.
    std::unique_lock<std::mutex> nameLock = m_locks.lock(fileName);
    if (m_dropped)
        return;
    const int type = product == QLatin1String("DK") ? CordlessXml : DeskPhoneXml;
    if (m_source.exportDevices(type, QStringLiteral("UTF-8"), fileName, folder))
        sendFile(folder + QLatin1Char('/') + fileName, std::move(nameLock));
}

/// Reads the file, gives its name free and sends what was read; nobody waits for a slow client.
void HttpdThread::sendFile(const QString &path, std::unique_lock<std::mutex> nameLock)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        nameLock.unlock();
        closeSocket();
        return;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    const QString body = stream.readAll();
    file.close();
    nameLock.unlock();

    touch();
    m_busy = false;
    m_socket->write(answerHeader().toUtf8());
    m_socket->write(body.toUtf8());
    closeSocket();
    connect(m_socket, &QTcpSocket::bytesWritten, this, &HttpdThread::disCurrentSocket);
}

void HttpdThread::closeSocket()
{
    m_socket->close();
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        waitFor(disconnectTimeout, &QTcpSocket::waitForDisconnected);
}

void HttpdThread::disCurrentSocket(qint64 bytes)
{
    Q_UNUSED(bytes)
    if (m_socket)
        m_socket->disconnectFromHost();
}
