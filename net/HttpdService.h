#pragma once

#include "net/NetInterface.h"

#include <QDialog>
#include <QMessageBox>
#include <QPointer>
#include <QStringList>

#include <functional>

class HttpdServer;
struct RequestEnd;
class NetCardSelectDialog;
class ProvisioningSource;
class QLabel;
class QPushButton;

/// Starts the HTTP server from which the phones fetch their files: lets the user choose the network
/// card to announce, opens the port that "port.xml" asks for, and tells where the server runs. The
/// dialog itself shows that; its owner decides when.
///
/// GUI thread. Meant for one start; make a new service for the next.
class HttpdService : public QDialog
{
    Q_OBJECT

public:
    /// `source` must outlive the service; `baseDir` ends in "/".
    HttpdService(ProvisioningSource &source, const QString &baseDir, QWidget *parent = nullptr);
    /// Stops and waits for the connections' threads. Must not be called while start() is running.
    ~HttpdService() override;

    /// Asks the user and starts the server; true when it runs. A failure has been shown to the user
    /// when this returns. Returns false when the service is stopped or the program quits while a
    /// question is open.
    bool start();

    /// See HttpdServer::clearDocuments().
    void clearDocuments();
    bool hasDocumentsToClear() const;

    /// Ends the service at once, also in the middle of start().
    void stop();

    /// The chosen card's IPv4 addresses, the announced one first; empty unless running.
    QStringList addresses() const { return m_ipList; }
    /// The port that is really open; 0 when none is.
    quint16 port() const;

    /// Replaces where the machine's interfaces come from. For tests.
    using InterfaceSource = std::function<QList<NetInterface>()>;
    void setInterfaceSource(InterfaceSource source);

signals:
    /// A phone's request, as a text for the user.
    void httpdMsg(const QString &message);
    /// Where the phones find the server, after each successful start.
    void httpdAddressChanged(const QString &address, const QString &port);
    /// See HttpdServer.
    void requestEnded(const RequestEnd &request);

private:
    bool runStart();
    bool chooseCard();
    bool openPort();
    bool listenOrRandom(quint16 port, const QString &warning);
    bool showBox(QMessageBox::Icon icon, const QString &text);
    void fillDialog();

    QLabel *m_label = nullptr;
    QPushButton *m_okButton = nullptr;
    HttpdServer *m_server = nullptr;
    QStringList m_ipList;
    NetCardSelectDialog *m_cardDialog;

    ProvisioningSource &m_source;
    QString m_baseDir;
    InterfaceSource m_interfaces;
    QPointer<HttpdServer> m_stoppedServer; ///< waits for its deferred deletion
    QPointer<QMessageBox> m_box;           ///< the box that is open now
    bool m_starting = false;
};
