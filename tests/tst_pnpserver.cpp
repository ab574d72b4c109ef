#include "Literal.h"
#include "PnPSubscribe.h"
#include "model/DeviceLookup.h"
#include "model/RequestEnd.h"
#include "net/PnPServer.h"

#include <QTest>
#include <QUdpSocket>

#include <array>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr quint16 sipPort = 5060;
constexpr quint16 replyPort = 5080;

const char knownMac[] = "0200a7000001";
const char otherKnownMac[] = "0200a7000002";
const char unknownMac[] = "0200a7ffffff";

class FakeLookup : public DeviceLookup
{
public:
    bool macExists(const QString &mac) const override { return mac.startsWith("0200a700000"_s); }
    void subscribeEnded(const RequestEnd &request) override
    {
        ends.append(RequestEnd::word(request.outcome));
    }

    QList<QByteArray> ends;
};

QHostAddress loopback()
{
    return QHostAddress(QHostAddress::LocalHost);
}

bool isPortFree(quint16 port)
{
    return QUdpSocket().bind(QHostAddress::AnyIPv4, port, QAbstractSocket::DontShareAddress);
}

} // namespace

/// The real server, with a phone at the loopback address that speaks to it directly.
class TestPnPServer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!isPortFree(sipPort) || !isPortFree(replyPort))
            QSKIP("another program has port 5060 or 5080");
        QUdpSocket socket;
        socket.bind(QHostAddress(QHostAddress::AnyIPv4), 0);
        const QHostAddress group("224.0.1.75"_s);
        const QNetworkInterface card = QNetworkInterface::interfaceFromName("lo"_s);
        if (!socket.joinMulticastGroup(group) &&
            !(card.isValid() && socket.joinMulticastGroup(group, card)))
            QSKIP("this machine's network knows no multicast groups");
    }

    void init()
    {
        m_server.reset();
        m_lookup = std::make_unique<FakeLookup>();
        m_server = std::make_unique<PnPServer>(*m_lookup);
        m_server->setHttpdAddress("127.0.0.1"_s, "80"_s);
        m_phone = std::make_unique<QUdpSocket>();
        QVERIFY(m_phone->bind(loopback(), 0));
        if (QTest::currentTestFunction() != QByteArray("startsAndStops"))
            QVERIFY(m_server->start());
    }

    void tellsAKnownPhoneWhereItsFileIs()
    {
        subscribe(knownMac);
        QVERIFY(isAnsweredOnly(knownMac, "http://127.0.0.1:80/"));
        // The service was closed and opened on another card and port meanwhile.
        m_server->setHttpdAddress("127.0.0.2"_s, "5001"_s);
        // The answer goes where the request says, not where it came from.
        QUdpSocket sender;
        QVERIFY(sender.bind(loopback(), 0));
        sender.writeDatagram(pnpSubscribe(knownMac, address(*m_phone), "DK71X"), loopback(),
                             sipPort);
        QVERIFY(isAnsweredOnly(knownMac, "http://127.0.0.2:5001"));
        QCOMPARE(m_answerFrom, QHostAddress("127.0.0.2"_s));

        subscribe(unknownMac);
        const QByteArray refused = received();
        QVERIFY2(refused.startsWith("SIP/2.0 501 Not Implemented\r\n"), refused);
        QVERIFY2(refused.contains("\r\nFrom: <sip:MAC%3A0200a7ffffff@127.0.0.2>;tag=5150\r\n"),
                 refused);
        QCOMPARE(m_lookup->ends, QList<QByteArray>({"accepted", "accepted", "not listed"}));
    }

    void sendsNothing()
    {
        const auto from = [](const QByteArray &address) {
            return pnpSubscribe(knownMac, address, "KTP2135");
        };
        const QByteArray phone = address(*m_phone);
        for (const auto &[end, datagram] : std::vector<std::pair<QByteArray, QByteArray>>{
                 {"malformed", QByteArray(65507, '@')},
                 {"malformed", from(phone).replace("model=", "")},
                 {"own address", from("127.0.0.1:5060")},
                 {"own address", from("127.255.255.255:9")},
                 {"far address", from("203.0.113.77:9")},
                 {"too brief",
                  from(phone).replace(";branch", ":" + QByteArray(400, '\xff') + ";branch")}}) {
            m_lookup->ends.clear();
            m_phone->writeDatagram(datagram, loopback(), sipPort);
            QTRY_COMPARE(m_lookup->ends, QList<QByteArray>({end}));
            // An answer would come before the next request's.
            subscribe(otherKnownMac);
            QVERIFY(isAnsweredOnly(otherKnownMac));
        }
    }

    void answersTheLaterOfTwo()
    {
        // Both requests arrive before the event loop turns.
        subscribe(knownMac);
        subscribe(otherKnownMac);
        QVERIFY(isAnsweredOnly(otherKnownMac));
        subscribe(knownMac);
        QVERIFY(isAnsweredOnly(knownMac));
        QCOMPARE(m_lookup->ends.first(), QByteArray("repeated"));
    }

    void answersEveryPhoneOfABurst()
    {
        std::array<QUdpSocket, 100> phones;
        for (QUdpSocket &phone : phones) {
            QVERIFY(phone.bind(loopback(), 0));
            phone.writeDatagram(pnpSubscribe(knownMac, address(phone), ""), loopback(), sipPort);
        }
        for (const QUdpSocket &phone : phones)
            QTRY_VERIFY(phone.hasPendingDatagrams());
        // The address has had its share.
        subscribe(knownMac);
        QTRY_COMPARE(m_lookup->ends.last(), QByteArray("too many"));
        // However often it asks, the other phone is answered.
        for (int i = 0; i < 2000; ++i)
            subscribe(knownMac);
        QUdpSocket neighbour;
        QVERIFY(neighbour.bind(QHostAddress("127.0.0.2"_s), 0));
        const QByteArray via = address(neighbour);
        const auto isAnswered = [&] {
            neighbour.writeDatagram(pnpSubscribe(otherKnownMac, via, "KTP2135"), loopback(),
                                    sipPort);
            return neighbour.hasPendingDatagrams();
        };
        QTRY_VERIFY(isAnswered());
    }

    void startsAndStops()
    {
        QUdpSocket other;
        QVERIFY(other.bind(QHostAddress::AnyIPv4, sipPort, QAbstractSocket::DontShareAddress));
        QVERIFY(!m_server->start() && !m_server->stop());
        other.close();
        for (int i = 0; i < 3; ++i) {
            QVERIFY(m_server->start() && !m_server->start()); // and it goes on
            subscribe(knownMac);
            QVERIFY(isAnsweredOnly(knownMac));
            QVERIFY(m_server->stop() && !m_server->stop());
            QVERIFY(isPortFree(sipPort));
        }
    }

private:
    QByteArray address(const QUdpSocket &phone) const
    {
        return phone.localAddress().toString().toLatin1() + ':' +
               QByteArray::number(phone.localPort());
    }
    void subscribe(const QByteArray &mac)
    {
        m_phone->writeDatagram(pnpSubscribe(mac, address(*m_phone), "KTP2135"), loopback(),
                               sipPort);
    }
    /// The next datagram that comes to the phone. Empty when none does in time, or from elsewhere.
    QByteArray received()
    {
        if (!QTest::qWaitFor([this] { return m_phone->hasPendingDatagrams(); }))
            return QByteArray();
        QByteArray datagram(int(m_phone->pendingDatagramSize()), Qt::Uninitialized);
        quint16 port = 0;
        m_phone->readDatagram(datagram.data(), datagram.size(), &m_answerFrom, &port);
        return port == replyPort ? datagram : QByteArray();
    }

    /// Whether the next two datagrams accept this phone and send it to that address.
    bool isAnsweredOnly(const QByteArray &mac, const QByteArray &url = "http://127.0.0.1:80/")
    {
        const QByteArray accepted = received();
        const QByteArray notify = received();
        return accepted.startsWith("SIP/2.0 202 Accepted subscription\r\n") &&
               accepted.contains("%3A" + mac + "@") &&
               notify.startsWith("NOTIFY sip:" + address(*m_phone) + " SIP/2.0\r\n") &&
               notify.endsWith("\r\n\r\n" + url);
    }

    std::unique_ptr<FakeLookup> m_lookup;
    std::unique_ptr<PnPServer> m_server;
    std::unique_ptr<QUdpSocket> m_phone;
    QHostAddress m_answerFrom; ///< where the last received datagram came from
};

QTEST_GUILESS_MAIN(TestPnPServer)
#include "tst_pnpserver.moc"
