#pragma once

#include "model/RequestEnd.h"
#include "net/PnPGuard.h"

#include <QDeadlineTimer>
#include <QNetworkInterface>
#include <QObject>
#include <QString>

#include <vector>

class DeviceLookup;
struct PnPRequest;
class QUdpSocket;

/// The SIP plug-and-play responder: hears the SUBSCRIBE of a phone that boots without a
/// configuration and tells the phone where the HTTP service keeps its file. GUI thread.
///
/// PnPRequest reads a datagram, PnPGuard decides whether it is answered, and PnPMessages has the
/// answers; this class moves the bytes.
class PnPServer : public QObject
{
    Q_OBJECT

public:
    /// `devices` must outlive the server.
    explicit PnPServer(DeviceLookup &devices);

    /// Listens for phones. False when the port is taken or no network card could join the multicast
    /// group; nothing listens then.
    bool start();

    /// Stops listening. False when it did not listen, or the group could not be left.
    bool stop();
    /// True from a successful start() until stop(), whatever stop() returns.
    bool isListening() const;

public slots:
    /// Reads the datagrams that have arrived and answers the last one of each sender.
    void requestMulticastData();
    /// From now on, phones are sent to the HTTP service at this address and port, and the answers
    /// leave from this address.
    void setHttpdAddress(const QString &address, const QString &port);

private:
    struct Datagram
    {
        QHostAddress sender;
        quint16 senderPort;
        QByteArray bytes;
    };

    void bindSendSocket();
    bool joinGroup();
    bool leaveGroup();
    QNetworkInterface publishedCard() const;
    std::vector<Datagram> takeArrived();
    void handle(const Datagram &datagram);
    bool adopt(const PnPRequest &request);
    RequestOutcome answer(const Datagram &datagram, const PnPRequest &request, bool macExist,
                          qint64 &sent);
    PnPGuard::Verdict judge(const PnPGuard::Exchange &exchange);
    qint64 send(const QString &message);
    void tellEnd(const QHostAddress &sender, const PnPRequest &request, RequestOutcome outcome,
                 qint64 sent);

    DeviceLookup &m_devices;

    QUdpSocket *m_receiveSocket;
    QUdpSocket *m_sendSocket = nullptr; ///< made at the first start and kept
    QString m_localAddress;
    // The last request, as far as it could be read; the other parts are from earlier requests.
    QString m_requestAddressAndPort;
    QString m_requestAddress;
    int m_requestPort = 0;
    QString m_requestMacAddress;
    QString m_requestBranchTag;
    QString m_requestFromTag;
    QString m_requestCallIdStr;
    QString m_requestCseqStr;
    QString m_requestEventStr;
    QString m_modelStr;
    QString m_httpdUrl;

    PnPGuard m_guard;
    QDeadlineTimer m_networksKnown; ///< once it has expired, the networks are read again
    bool m_joinedAnyCard = false;
    QNetworkInterface m_joinedCard; ///< the published card; invalid unless it joined the group
};
