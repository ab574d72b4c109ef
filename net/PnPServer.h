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

/// The SIP plug-and-play responder: hears the SUBSCRIBE of a telephone that boots without a
/// configuration and tells it where the HTTP service keeps its file. GUI thread.
///
/// What a datagram says is PnPRequest's business, whether it is answered PnPGuard's, and with what
/// PnPMessages'; this class moves the bytes.
class PnPServer : public QObject
{
    Q_OBJECT

public:
    /// `devices` must outlive the server.
    explicit PnPServer(DeviceLookup &devices);

    /// Listens for telephones. False when the port is taken or no network card takes part in the
    /// multicast group; nothing listens then.
    bool start();

    /// Stops listening. False when it did not listen, or the group could not be left.
    bool stop();
    /// True between a successful start() and stop(), also one that could not leave the group.
    bool isListening() const;

public slots:
    /// Reads the datagrams that have arrived and answers, of each sender's, the last.
    void requestMulticastData();
    /// From now on telephones are sent to the HTTP service at this address and port, and the
    /// answers leave from this address.
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
    // The last request, as far as it could be read; what it did not say is left from before.
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
    QDeadlineTimer m_networksKnown; ///< when expired, they are to be read again
    bool m_joinedAnyCard = false;
    QNetworkInterface m_joinedCard; ///< invalid while not joined on a certain card
};
