#include "net/PnPServer.h"

#include "model/DebugLog.h"
#include "model/DeviceLookup.h"
#include "net/PnPMessages.h"
#include "net/PnPRequest.h"

#include <QUdpSocket>

namespace {

constexpr quint16 sipPort = 5060;
constexpr int largestDatagram = 65536;

/// Datagrams taken in at one go. More wait for the next turn of the event loop, so that a flood
/// does not stop the window.
constexpr int mostAtOnce = 1000;

QHostAddress multicastGroup()
{
    return QHostAddress(QStringLiteral("224.0.1.75"));
}

const char *word(bool value)
{
    return value ? "true" : "false";
}

/// Whether `address` means every host of the network that `own` is an address of. Some systems
/// still take the network's own number for its broadcast address.
bool isBroadcast(const QHostAddress &address, const QNetworkAddressEntry &own)
{
    constexpr int smallestBroadcasting = 30; // longer prefixes have hosts only
    const quint32 hostBits = ~own.netmask().toIPv4Address();
    const quint32 host = address.toIPv4Address() & hostBits;
    return address == own.broadcast() ||
           ((host == 0 || host == hostBits) && own.prefixLength() <= smallestBroadcasting &&
            address.isInSubnet(own.ip(), own.prefixLength()));
}

} // namespace

PnPServer::PnPServer(DeviceLookup &devices)
    : m_devices(devices)
    , m_receiveSocket(new QUdpSocket(this))
{
    m_receiveSocket->setSocketOption(QAbstractSocket::MulticastLoopbackOption, 0);
    connect(m_receiveSocket, &QUdpSocket::readyRead, this, &PnPServer::requestMulticastData);
}

bool PnPServer::start()
{
    if (!m_sendSocket) {
        qCDebug(debugLog) << "m_localAddress = " << m_localAddress;
        m_sendSocket = new QUdpSocket(this);
        m_sendSocket->bind(QHostAddress(m_localAddress), PnPMessages::replyPort,
                           QAbstractSocket::ReuseAddressHint);
    }
    if (m_receiveSocket->peerPort() == 0) {
        const bool bound = m_receiveSocket->bind(QHostAddress::AnyIPv4, sipPort,
                                                 QAbstractSocket::DontShareAddress);
        qCDebug(debugLog) << "bindFlag = " << word(bound);
        if (!bound)
            return false;
    }
    const bool joined = joinGroup();
    qCDebug(debugLog) << "joinFlag = " << word(joined);
    if (!joined)
        // Gives the port free again, or the next start could not have it.
        m_receiveSocket->abort();
    return joined;
}

bool PnPServer::isListening() const
{
    return m_receiveSocket->state() != QAbstractSocket::UnconnectedState;
}

bool PnPServer::stop()
{
    if (m_receiveSocket->state() == QAbstractSocket::UnconnectedState)
        return false;
    const bool left = leaveGroup();
    m_receiveSocket->abort();
    return left;
}

/// Joins on the card that has the published address, which is where the telephones are, and on the
/// card of the system's choice, which without a default route there is none of. Often they are the
/// same and the second join fails. The published card comes first, as it is joined by name: that
/// can be left again when its address and the routes are gone.
bool PnPServer::joinGroup()
{
    m_joinedCard = publishedCard();
    if (m_joinedCard.isValid() &&
        !m_receiveSocket->joinMulticastGroup(multicastGroup(), m_joinedCard))
        m_joinedCard = QNetworkInterface();
    m_joinedAnyCard = m_receiveSocket->joinMulticastGroup(multicastGroup());
    return m_joinedAnyCard || m_joinedCard.isValid();
}

bool PnPServer::leaveGroup()
{
    bool left = false;
    if (m_joinedCard.isValid())
        left = m_receiveSocket->leaveMulticastGroup(multicastGroup(), m_joinedCard);
    if (m_joinedAnyCard)
        left = m_receiveSocket->leaveMulticastGroup(multicastGroup()) || left;
    return left;
}

QNetworkInterface PnPServer::publishedCard() const
{
    const QHostAddress published(m_localAddress);
    const QList<QNetworkInterface> cards = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &card : cards) {
        const QList<QNetworkAddressEntry> entries = card.addressEntries();
        for (const QNetworkAddressEntry &entry : entries) {
            if (entry.ip() == published)
                return card;
        }
    }
    return {};
}

/// Whether the answer would reach this server's own ear, where it would pass for a request and be
/// answered again, without end. A telephone cannot have the address: the port is taken.
bool PnPServer::comesBack(const PnPRequest &request)
{
    const QHostAddress address(request.address);
    bool own = request.port == sipPort && address.isLoopback();
    const QList<QNetworkInterface> cards = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &card : cards) {
        const QList<QNetworkAddressEntry> entries = card.addressEntries();
        for (const QNetworkAddressEntry &entry : entries)
            own = own || (request.port == sipPort && entry.ip() == address) ||
                  isBroadcast(address, entry);
    }
    if (own)
        qCDebug(debugLog) << "The answer would come back to this server.";
    return own;
}

void PnPServer::setHttpdAddress(const QString &address, const QString &port)
{
    qCDebug(debugLog) << "httpd address changed addr = " << address << "port = " << port;
    m_httpdUrl = QLatin1String("http://") + address + QLatin1Char(':') + port;
    m_localAddress = address;
}

void PnPServer::requestMulticastData()
{
    QByteArray buffer(largestDatagram, Qt::Uninitialized);
    qint64 length = -1;
    for (int i = 0; i < mostAtOnce && m_receiveSocket->hasPendingDatagrams(); ++i) {
        // One that is damaged is not read, and leaves the one before it in the buffer.
        const qint64 read = m_receiveSocket->readDatagram(buffer.data(), buffer.size());
        length = read < 0 ? length : read;
    }
    if (length < 0)
        return;
    buffer.truncate(static_cast<int>(length));
    qCDebug(debugLog) << "arrived request datagram = " << QString::fromLatin1(buffer.constData());

    const PnPRequest request = PnPRequest::parse(buffer);
    const bool macExist = adopt(request);
    if (request.isComplete() && !comesBack(request))
        answer(request, macExist);
}

/// Keeps what the request says, and logs it, up to where its reading stopped. Returns whether the
/// telephone is in the list.
bool PnPServer::adopt(const PnPRequest &request)
{
    const auto keep = [&](PnPRequest::Step step, const char *name, QString &field,
                          const QString &value) {
        if (request.stoppedAt == step)
            qCDebug(debugLog) << PnPRequest::failureText(step);
        if (request.stoppedAt <= step)
            return;
        field = value;
        qCDebug(debugLog) << name << value;
    };
    keep(PnPRequest::MacAddress, "m_requestMacAddress = ", m_requestMacAddress, request.macAddress);
    bool macExist = false;
    if (request.stoppedAt > PnPRequest::MacAddress) {
        macExist = m_devices.macExists(request.macAddress);
        qCDebug(debugLog) << "macExist = " << word(macExist);
    }
    keep(PnPRequest::AddressAndPort, "m_requestAddressAndPort = ", m_requestAddressAndPort,
         request.addressAndPort);
    if (request.stoppedAt > PnPRequest::AddressAndPort) {
        m_requestAddress = request.address;
        m_requestPort = request.port;
        qCDebug(debugLog) << "m_requestAddress & m_requestPort = " << m_requestAddress << "/"
                          << m_requestPort;
    }
    keep(PnPRequest::Branch, "m_requestBranchTag = ", m_requestBranchTag, request.branch);
    keep(PnPRequest::FromTag, "m_requestFromTag = ", m_requestFromTag, request.fromTag);
    keep(PnPRequest::CallId, "m_requestCallIdStr = ", m_requestCallIdStr, request.callId);
    keep(PnPRequest::Cseq, "m_requestCseqStr = ", m_requestCseqStr, request.cseq);
    keep(PnPRequest::Event, "m_requestEventStr = ", m_requestEventStr, request.event);
    keep(PnPRequest::Model, "m_modelStr = ", m_modelStr, request.model);
    return macExist;
}

void PnPServer::answer(const PnPRequest &request, bool macExist)
{
    if (!macExist) {
        const QString text = PnPMessages::notImplemented(request, m_localAddress);
        qCDebug(debugLog) << "501 Implemented datagram send = " << text;
        send(text);
        return;
    }
    const QString acceptance = PnPMessages::accepted(request);
    qCDebug(debugLog) << "Send 202 First = " << acceptance;
    send(acceptance);
    const QString notification = PnPMessages::notify(request, m_localAddress, m_httpdUrl);
    qCDebug(debugLog) << "Send Notify = " << notification;
    send(notification);
}

/// To the address that the request names, which is not always the one that it came from.
void PnPServer::send(const QString &message)
{
    m_sendSocket->writeDatagram(message.toUtf8(), QHostAddress(m_requestAddress),
                                static_cast<quint16>(m_requestPort));
}
