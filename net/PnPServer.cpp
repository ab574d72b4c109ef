#include "net/PnPServer.h"

#include "model/DebugLog.h"
#include "model/DeviceLookup.h"
#include "model/MacAddress.h"
#include "net/PnPMessages.h"
#include "net/PnPRequest.h"

#include <QUdpSocket>

#include <algorithm>
#include <chrono>

namespace {

constexpr int largestDatagram = 65536;

/// Datagrams read in one turn of the event loop. Further ones wait for the next turn, so that a
/// flood does not block the window.
constexpr int mostAtOnce = 200;

/// The system's buffer while the window is busy: room for the requests of several hundred phones.
/// The default of some systems is small.
constexpr int receiveBufferSize = 512 * 1024;

/// How long the networks stay known: asking the system for them takes longer than an answer.
constexpr int networksStayKnown = 1000; // ms

QHostAddress multicastGroup()
{
    return QHostAddress(QStringLiteral("224.0.1.75"));
}

const char *word(bool value)
{
    return value ? "true" : "false";
}

QList<QNetworkAddressEntry> ownAddresses()
{
    QList<QNetworkAddressEntry> addresses;
    const QList<QNetworkInterface> cards = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &card : cards)
        addresses += card.addressEntries();
    return addresses;
}

RequestOutcome outcomeOf(PnPGuard::Verdict refusal)
{
    switch (refusal) {
    case PnPGuard::ComesBack:
        return RequestOutcome::OwnAddress;
    case PnPGuard::OtherNetwork:
        return RequestOutcome::FarAddress;
    case PnPGuard::TooLong:
        return RequestOutcome::TooBrief;
    case PnPGuard::TooOften:
    case PnPGuard::Allowed:
        break;
    }
    return RequestOutcome::TooMany;
}

PnPGuard::Time steadyTime()
{
    return std::chrono::duration_cast<PnPGuard::Time>(
        std::chrono::steady_clock::now().time_since_epoch());
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
    }
    bindSendSocket();
    if (m_receiveSocket->peerPort() == 0) {
        const bool bound = m_receiveSocket->bind(QHostAddress::AnyIPv4, PnPMessages::requestPort,
                                                 QAbstractSocket::DontShareAddress);
        qCDebug(debugLog) << "bindFlag = " << word(bound);
        if (!bound)
            return false;
        m_receiveSocket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption,
                                         receiveBufferSize);
    }
    const bool joined = joinGroup();
    qCDebug(debugLog) << "joinFlag = " << word(joined);
    if (!joined)
        // Releases the port, which the next start could not bind otherwise.
        m_receiveSocket->abort();
    return joined;
}

/// Binds to the published address, which may be another card's by now. When that fails, answers
/// leave from a port that the system chooses.
void PnPServer::bindSendSocket()
{
    const QHostAddress address(m_localAddress);
    if (m_sendSocket->localAddress() == address &&
        m_sendSocket->localPort() == PnPMessages::replyPort)
        return;
    m_sendSocket->abort();
    m_sendSocket->bind(address, PnPMessages::replyPort, QAbstractSocket::ReuseAddressHint);
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

/// Joins the group on the card with the published address, where the phones are, and on the card
/// that the system chooses; without a default route, the system chooses none. Often both are the
/// same card and the second join fails. The published card comes first, as it is joined by name:
/// it can leave the group even when its address and the routes are gone.
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

void PnPServer::setHttpdAddress(const QString &address, const QString &port)
{
    qCDebug(debugLog) << "httpd address changed addr = " << address << "port = " << port;
    m_httpdUrl = QLatin1String("http://") + address + QLatin1Char(':') + port;
    m_localAddress = address;
    if (m_sendSocket)
        bindSendSocket();
}

void PnPServer::requestMulticastData()
{
    const std::vector<Datagram> arrived = takeArrived();
    for (const Datagram &datagram : arrived)
        handle(datagram);
}

/// Of the datagrams of one sender that have arrived together, the last counts. Different senders do
/// not replace each other: when a building gets its power back, many phones ask at the same
/// instant, and repeat it at the same instant.
std::vector<PnPServer::Datagram> PnPServer::takeArrived()
{
    std::vector<Datagram> arrived;
    QByteArray buffer(largestDatagram, Qt::Uninitialized);
    int read = 0;
    // Reads before it asks for pending ones: after a damaged datagram the socket says that none is
    // pending, and announces further ones only once it was read from.
    do {
        QHostAddress sender;
        quint16 port = 0;
        const qint64 length =
            m_receiveSocket->readDatagram(buffer.data(), buffer.size(), &sender, &port);
        if (length < 0)
            continue; // damaged on its way
        const auto isSenders = [&](const Datagram &other) {
            return other.sender == sender && other.senderPort == port;
        };
        const auto repeated = std::find_if(arrived.begin(), arrived.end(), isSenders);
        if (repeated != arrived.end()) {
            arrived.erase(repeated);
            tellEnd(sender, PnPRequest(), RequestOutcome::Repeated, 0);
        }
        arrived.push_back({sender, port, buffer.left(static_cast<int>(length))});
    } while (++read < mostAtOnce && m_receiveSocket->hasPendingDatagrams());
    return arrived;
}

void PnPServer::handle(const Datagram &datagram)
{
    qCDebug(debugLog) << "arrived request datagram = "
                      << QString::fromLatin1(datagram.bytes.constData());
    const PnPRequest request = PnPRequest::parse(datagram.bytes);
    const bool macExist = adopt(request);
    qint64 sent = 0;
    const RequestOutcome outcome = request.isComplete() ? answer(datagram, request, macExist, sent)
                                                        : RequestOutcome::Malformed;
    tellEnd(datagram.sender, request, outcome, sent);
}

void PnPServer::tellEnd(const QHostAddress &sender, const PnPRequest &request,
                        RequestOutcome outcome, qint64 sent)
{
    RequestEnd end;
    end.time = RequestEnd::now();
    end.protocol = RequestEnd::Protocol::Sip;
    end.peer = sender.toIPv4Address();
    // In a request that is no phone's, the text there may be a password.
    if (isMac(request.macAddress)) {
        end.asked = request.macAddress;
        end.mac = request.macAddress;
    }
    end.product = request.model;
    end.outcome = outcome;
    end.bytes = sent;
    m_devices.subscribeEnded(end);
}

/// Keeps and logs the parts of the request up to where its reading stopped. Returns whether the
/// phone is in the list.
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

/// Answers the request and returns how it ended. Adds the bytes sent to `sent`.
RequestOutcome PnPServer::answer(const Datagram &datagram, const PnPRequest &request, bool macExist,
                                 qint64 &sent)
{
    struct Message
    {
        const char *name;
        QString text;
    };
    std::vector<Message> messages;
    if (macExist) {
        messages.push_back({"Send 202 First = ", PnPMessages::accepted(request)});
        messages.push_back(
            {"Send Notify = ", PnPMessages::notify(request, m_localAddress, m_httpdUrl)});
    } else {
        messages.push_back({"501 Implemented datagram send = ",
                            PnPMessages::notImplemented(request, m_localAddress)});
    }

    PnPGuard::Exchange exchange;
    exchange.sender = datagram.sender;
    exchange.address = QHostAddress(request.address);
    exchange.port = request.port;
    exchange.requestSize = datagram.bytes.size();
    exchange.datagrams = static_cast<int>(messages.size());
    for (const Message &message : messages)
        exchange.answerSize += message.text.toUtf8().size();
    const PnPGuard::Verdict verdict = judge(exchange);
    if (verdict != PnPGuard::Allowed)
        return outcomeOf(verdict);
    for (const Message &message : messages) {
        qCDebug(debugLog) << message.name << message.text;
        sent += send(message.text);
    }
    if (sent < exchange.answerSize)
        return RequestOutcome::NotSent;
    return macExist ? RequestOutcome::Accepted : RequestOutcome::NotListed;
}

PnPGuard::Verdict PnPServer::judge(const PnPGuard::Exchange &exchange)
{
    if (m_networksKnown.hasExpired()) {
        m_guard.setNetworks(ownAddresses());
        m_networksKnown.setRemainingTime(networksStayKnown);
    }
    const PnPGuard::Verdict verdict = m_guard.judge(exchange, steadyTime());
    if (verdict != PnPGuard::Allowed)
        qCDebug(debugLog) << PnPGuard::refusalText(verdict);
    return verdict;
}

/// Sends to the address that the request names, which may differ from the sender's. Returns how
/// many bytes the network took.
qint64 PnPServer::send(const QString &message)
{
    return qMax<qint64>(0, m_sendSocket->writeDatagram(message.toUtf8(),
                                                       QHostAddress(m_requestAddress),
                                                       static_cast<quint16>(m_requestPort)));
}
