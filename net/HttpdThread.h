#pragma once

#include "net/ConnectionHandle.h"

#include <QMutex>
#include <QString>
#include <QTcpSocket>
#include <QThread>

#include <atomic>
#include <memory>
#include <mutex>

class FileNameLocks;
class ProvisioningSource;
struct HttpRequest;

/// One connection of a telephone: reads one request, has the provisioning file written, sends it
/// and ends. There is no event loop; run() is the whole life of the connection.
///
/// The object belongs to the thread that created it (the server's). On the connection's own thread
/// run: run(), getMessage(), serveRequest(), sendFile(). Shared between the two threads are the
/// connection handle (which locks for itself) and the atomics below, nothing else.
class HttpdThread : public QThread
{
    Q_OBJECT

public:
    /// Takes the accepted connection over. `source` and `locks` must outlive the thread; `baseDir`
    /// ends in "/".
    HttpdThread(qintptr socketDescriptor, ProvisioningSource &source, const QString &baseDir,
                FileNameLocks &locks);
    /// Waits for the thread. Closes the connection if it never ran.
    ~HttpdThread() override;

    /// False when the system had no descriptors left to keep a hold on the connection.
    bool isUsable() const;

    /// Publishes all that was done on the connection's thread. Called at its end.
    void markEnded();
    /// Cuts the connection; a thread that waits for it wakes up and ends. Server's thread.
    void drop();
    /// True once drop() was called or run() is over: the thread needs no further push to end.
    bool isEnding() const;
    /// True while there is something to do: a request to be read, or a file being generated.
    bool isBusy() const;
    /// For how many milliseconds nothing has happened on the connection.
    qint64 idleTime() const;

signals:
    /// The connection could not be taken over.
    void error(QTcpSocket::SocketError socketError); // clazy:exclude=fully-qualified-moc-types
    /// Tells the user which file is asked for.
    void singleRequest(const QString &report);

public slots:
    /// Reads the request from the socket, reports and answers it. The connection's own thread.
    void getMessage();
    void disCurrentSocket(qint64 bytes);

protected:
    void run() override;

private:
    HttpRequest readRequest();
    void serveRequest(const QString &fileName, const QString &product);
    void sendFile(const QString &path, std::unique_lock<std::mutex> nameLock);
    template <typename Condition>
    bool waitFor(int timeout, Condition condition);
    void closeSocket();
    void touch();

    qintptr m_socketDescriptor;
    QTcpSocket *m_socket = nullptr;
    QMutex *m_mutex;
    QString m_baseDir;
    QString m_mac;

    ProvisioningSource &m_source;
    FileNameLocks &m_locks;
    ConnectionHandle m_connection;
    std::atomic<qint64> m_lastActivity;
    std::atomic<bool> m_dropped{false};
    std::atomic<bool> m_busy{false};
    std::atomic<bool> m_done{false}; ///< see markEnded()
};
