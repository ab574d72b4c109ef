#pragma once

#include "net/FileNameLocks.h"

#include <QQueue>
#include <QTcpServer>
#include <QTimer>
#include <QVector>

class HttpdThread;
class ProvisioningSource;

/// Accepts the telephones' connections and gives each its own HttpdThread. GUI thread.
///
/// There is a limit to the connections served at a time. At the limit, the one that has been idle
/// longest makes room, so that idle clients cannot keep telephones out; while all are busy, new
/// connections wait.
class HttpdServer : public QTcpServer
{
    Q_OBJECT

public:
    /// Connections served at a time where the system has descriptors enough.
    static constexpr int maxConnections = 512;

    /// `source` must outlive the server. Files are served from "HTTPD/MACCFG" below `baseDir`,
    /// which ends in "/".
    HttpdServer(ProvisioningSource &source, const QString &baseDir);
    /// Cuts all connections and waits for their threads: no call into the source is under way when
    /// this returns.
    ~HttpdServer() override;

    /// As SocketPlatform::listenAlone(), with a queue long enough for a building full of telephones
    /// that all start when the power comes back.
    bool listen(const QHostAddress &address, quint16 port);

    /// Stops listening and cuts all connections. Their threads end soon, but are not waited for.
    void shutDown();

    /// How many connections fit when the process may open this many descriptors.
    static int connectionLimit(qint64 descriptors);

signals:
    /// A telephone's request, as a text for the user.
    void requestServer(const QString &report);

protected:
    void incomingConnection(qintptr socketDescriptor) override;

private:
    void serveWaiting();
    bool hasDescriptors() const;
    void startThread(qintptr socketDescriptor);
    void makeRoom();
    bool dropLongestIdle();
    void pause();
    void resume();
    void onThreadGone(HttpdThread *thread);
    void onAcceptError();
    void closeWaiting();

    ProvisioningSource &m_source;
    QString m_baseDir;
    FileNameLocks m_locks;
    int m_limit;
    QVector<HttpdThread *> m_threads; ///< all that exist, until their destruction
    QQueue<qintptr> m_waiting;        ///< accepted, but without a thread yet
    QTimer m_timer;                   ///< looks for room and accepts again
};
