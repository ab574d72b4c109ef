#pragma once

#include "model/RequestEnd.h"
#include "net/ConnectionPool.h"
#include "net/DocumentFolder.h"

#include <QTcpServer>
#include <QTimer>

#include <deque>
#include <memory>
#include <mutex>
#include <variant>

class HttpdDoor;
class HttpdThread;
class Listener;
class ProvisioningSource;

/// Accepts the phones' connections and has HttpdThread answer their requests. GUI thread, but
/// accepting and serving run on other threads and go on while the GUI thread is busy: see
/// docs/threads.md.
///
/// There is a limit to the connections served at a time, and a share of it for each address. At the
/// limit, the connection that has been idle longest makes room, so that idle clients cannot keep
/// phones out; while all are busy, new connections wait.
class HttpdServer : public QTcpServer
{
    Q_OBJECT

public:
    /// Connections served at a time, if the system has enough descriptors.
    static constexpr int maxConnections = 512;

    /// `source` must outlive the server. Files are served from "HTTPD/MACCFG" below `baseDir`,
    /// which ends in "/".
    HttpdServer(ProvisioningSource &source, const QString &baseDir);
    /// Cuts all connections and waits for their threads: no call into the source is under way when
    /// this returns.
    ~HttpdServer() override;

    /// As SocketPlatform::listenAlone(), with a backlog long enough for a building full of phones
    /// that all start when the power comes back. Must not be called after shutDown().
    bool listen(const QHostAddress &address, quint16 port);

    /// Stops listening and cuts all connections. Does not wait for their threads, which end soon.
    void shutDown();

    /// Has every document removed soon, on a connection thread. For a list that was replaced.
    void clearDocuments();
    /// Whether documents are still to be removed for clearDocuments().
    bool hasDocumentsToClear() const { return m_folder.isToBeCleared(); }

    /// How many connections fit when the process may open this many descriptors.
    static int connectionLimit(qint64 descriptors);

signals:
    /// A phone's request, as a text for the user. Emitted in batches, ten a second at most.
    void requestServer(const QString &report);
    /// A phone's request has ended. Emitted after its report, in the same manner.
    void requestEnded(const RequestEnd &request);

protected:
    /// Takes an accepted connection over, to be served when its turn comes. Any thread.
    void incomingConnection(qintptr socketDescriptor) override;

private:
    SocketPlatform::Accept acceptConnection();
    void startThreads(int count);
    HttpdThread *startThread();
    /// What a phone asks for, or how its request ended.
    using Report = std::variant<QString, RequestEnd>;
    void onTurnedAway(quint32 peer);
    void onEnd(const RequestEnd &request);
    void addReport(Report report);
    Q_INVOKABLE void emitSoon();
    void emitReports();

    ProvisioningSource &m_source;
    QString m_baseDir;
    DocumentFolder m_folder;
    ConnectionPool m_pool;
    std::unique_ptr<Listener> m_listener; ///< outlives the threads
    std::unique_ptr<HttpdDoor> m_door;
    std::mutex m_reportMutex;
    std::deque<Report> m_reports; ///< guarded by m_reportMutex
    QTimer m_reportTimer;
};
