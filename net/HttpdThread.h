#pragma once

#include "model/RequestEnd.h"
#include "net/ConnectionHandle.h"

#include <QByteArray>
#include <QMutex>
#include <QString>
#include <QTcpSocket>
#include <QThread>

#include <atomic>
#include <functional>
#include <mutex>

class ConnectionPool;
class QFile;
class DocumentFolder;
class ProvisioningSource;
struct AcceptedConnection;
struct HttpRequest;
class QDeadlineTimer;

/// Serves the phones' connections, one after the other: reads one request, has the provisioning
/// file written, sends it, and takes the next connection. There is no event loop; run() is the
/// whole life of the thread.
///
/// The object lives on the server's thread. run(), getMessage(), serveRequest() and sendFile() run
/// on the connection thread. Threads share the connection handle (which has its own lock), the
/// atomics below, and, under the pool's mutex, the identity of the connection.
class HttpdThread : public QThread
{
    Q_OBJECT

public:
    /// `pool` gives out the connections. `pool`, `source` and `folder` must outlive the thread.
    HttpdThread(ConnectionPool &pool, ProvisioningSource &source, const QString &baseDir,
                DocumentFolder &folder);
    /// Waits for the thread.
    ~HttpdThread() override;

    /// Told of each connection's end, on the connection thread. To be set before the start.
    using EndListener = std::function<void(const RequestEnd &)>;
    void setEndListener(EndListener listener) { m_endListener = std::move(listener); }

    /// Publishes the connection thread's writes to other threads. Called there, last of all.
    void markEnded();

    /// For the pool, under its mutex, as the next three. Takes the connection over.
    void take(const AcceptedConnection &connection);
    /// The connection is over.
    void rest();
    bool hasConnection() const { return m_state != State::Resting; }
    /// The client's address.
    quint32 peer() const { return m_peer; }

    /// Cuts the connection; a thread that waits for it wakes up and goes on to the next. False when
    /// there is none, or it is cut already. Any thread, under the pool's mutex.
    bool drop();
    /// The same for a client that has sent nothing; false also when it has just sent something.
    bool evict();
    /// True from drop() until the connection is over.
    bool isDropped() const { return m_state == State::Dropped; }
    /// True when the thread waits for its client, which has sent nothing.
    bool isIdle() const;
    /// Milliseconds since the last activity on the connection.
    qint64 idleTime() const;

signals:
    /// The connection could not be taken over.
    /// Part of the interface; nothing here connects to it.
    void error(QTcpSocket::SocketError socketError); // clazy:exclude=fully-qualified-moc-types
    /// Tells the user which file is asked for.
    void singleRequest(const QString &report);

public slots:
    /// Reads the request from the socket, reports and answers it. The connection's own thread.
    void getMessage();
    /// Closes the connection once all is sent; ignores `bytes`. The connection's own thread.
    void disCurrentSocket(qint64 bytes);

protected:
    void run() override;

private:
    /// What the thread is doing.
    enum class State {
        Resting, ///< no connection
        Idle,    ///< the client's turn: to ask, or to take the answer
        Busy,    ///< reading a request or making the answer
        Dropped, ///< the connection is cut, and not over yet
        Ended,   ///< run() is over; publishes its writes to other threads
    };

    void serveConnection();
    void tellEnd();
    HttpRequest readRequest();
    bool waitForRest(const QDeadlineTimer &deadline);
    void serveRequest(const QString &fileName, const QString &product);
    bool openDocument(QFile &file, const QString &fileName, const QString &product);
    RequestOutcome whyNotWritten() const;
    void sendFile(QFile &file, std::unique_lock<std::mutex> nameLock);
    template <typename Condition>
    bool waitFor(int timeout, Condition condition);
    QByteArray answerHeader();
    bool beginWait();
    void closeSocket();
    void endStream();
    bool change(State from, State to);
    void touch();

    qintptr m_socketDescriptor = -1;
    QTcpSocket *m_socket = nullptr; ///< while there is a connection
    QMutex *m_mutex;
    QString m_baseDir;
    QString m_mac;
    QByteArray m_header;       ///< of an answer
    qint64 m_headerSecond = 0; ///< when it was made, in seconds since 1970
    RequestEnd m_end;          ///< of this connection; Dropped until it ends in another way
    EndListener m_endListener;

    ConnectionPool &m_pool;
    ProvisioningSource &m_source;
    DocumentFolder &m_folder;
    ConnectionHandle m_connection;
    quint32 m_peer = 0;
    std::atomic<qint64> m_lastActivity{0};
    std::atomic<State> m_state{State::Resting};
};
