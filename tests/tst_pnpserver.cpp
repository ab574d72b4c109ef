#include "PnPSubscribe.h"
#include "model/DeviceLookup.h"
#include "model/RequestEnd.h"
#include "net/PnPServer.h"

#include <QTest>
#include <QUdpSocket>

#include <array>
#include <memory>

namespace {

constexpr quint16 sipPort = 5060;
constexpr quint16 replyPort = 5080;

const char knownMac[] = "0200a7000001";
const char otherKnownMac[] = "0200a7000002";
const char unknownMac[] = "0200a7ffffff";

class FakeLookup : public DeviceLookup
{
public:
    bool macExists(const QString &mac) const override
    {
        asked.append(mac.toLatin1());
        return asked.last() == knownMac || asked.last() == otherKnownMac;
    }
    void subscribeEnded(const RequestEnd &request) override
    {
        ends.append(RequestEnd::word(request.outcome));
    }

    mutable QList<QByteArray> asked;
    QList<QByteArray> ends;
};

const QHostAddress loopback = QHostAddress(QHostAddress::LocalHost);

bool isPortFree(quint16 port)
{
    return QUdpSocket().bind(QHostAddress::AnyIPv4, port, QAbstractSocket::DontShareAddress);
}

} // namespace

/// The real server, with a telephone at the loopback address that speaks to it directly.
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
        const QNetworkInterface card = QNetworkInterface::interfaceFromIndex(
            QNetworkInterface::interfaceIndexFromName(QStringLiteral("lo")));
        const QHostAddress group(QStringLiteral("224.0.1.75"));
        if (!socket.joinMulticastGroup(group) &&
            !(card.isValid() && socket.joinMulticastGroup(group, card)))
            QSKIP("this machine's network knows no multicast groups");
    }

    void init()
    {
        m_server.reset();
        m_lookup = std::make_unique<FakeLookup>();
        m_server = std::make_unique<PnPServer>(*m_lookup);
        m_server->setHttpdAddress(QStringLiteral("127.0.0.1"), QStringLiteral("80"));
        m_phone = std::make_unique<QUdpSocket>();
        QVERIFY(m_phone->bind(loopback, 0));
        if (qstrcmp(QTest::currentTestFunction(), "startsAndStops") != 0)
            QVERIFY(m_server->start());
    }

    void tellsAKnownTelephoneWhereItsFileIs()
    {
        subscribe(knownMac);
        QVERIFY(received().startsWith("SIP/2.0 202 Accepted subscription\r\n"));
        const QByteArray notify = received();
        QVERIFY2(notify.startsWith("NOTIFY sip:" + address(*m_phone) + " SIP/2.0\r\n"), notify);
        QVERIFY2(notify.endsWith("\r\nContent-Length:    20\r\n\r\nhttp://127.0.0.1:80/"), notify);

        // The service was closed and opened on another card and port meanwhile.
        m_server->setHttpdAddress(QStringLiteral("127.0.0.2"), QStringLiteral("5001"));
        // The answer goes where the request says, not where it came from.
        QUdpSocket sender;
        QVERIFY(sender.bind(loopback, 0));
        sender.writeDatagram(pnpSubscribe(knownMac, address(*m_phone), "DK71X"), loopback, sipPort);
        QVERIFY(received().startsWith("SIP/2.0 202 "));
        QVERIFY(received().endsWith("\r\n\r\nhttp://127.0.0.2:5001"));
        QCOMPARE(m_answerFrom, QHostAddress(QStringLiteral("127.0.0.2")));
    }

    void refusesAnUnknownTelephone()
    {
        subscribe(unknownMac);
        const QByteArray refused = received();
        QVERIFY2(refused.startsWith("SIP/2.0 501 Not Implemented\r\n"), refused);
        QVERIFY2(refused.contains("\r\nFrom: <sip:MAC%3A0200a7ffffff@127.0.0.1>;tag=5150\r\n"),
                 refused);
        // What comes next is the answer to somebody else.
        subscribe(knownMac);
        QVERIFY(isAnsweredOnly(knownMac));
        QCOMPARE(m_lookup->asked, QList<QByteArray>({unknownMac, knownMac}));
        QCOMPARE(m_lookup->ends, QList<QByteArray>({"not listed", "accepted"}));
    }

    void sendsNothing_data()
    {
        QTest::addColumn<QByteArray>("datagram");
        QTest::addColumn<QByteArray>("end");
        const auto from = [](const QByteArray &address) {
            return pnpSubscribe(knownMac, address, "KTP2135");
        };
        const QByteArray phone = "127.0.0.1:%1"; // filled in when its port is known
        const auto row = [](const QByteArray &end, const QByteArray &datagram) {
            QTest::addRow("%s %d", end.constData(), datagram.size()) << datagram << end;
        };
        row("malformed", QByteArray(65507, '@'));
        row("malformed", from(phone).replace("model=", ""));
        row("own address", from("127.0.0.1:5060"));
        row("own address", from("127.255.255.255:9"));
        row("far address", from("203.0.113.77:9"));
        row("too brief", from(phone).replace(";branch", ":" + QByteArray(400, '\xff') + ";branch"));
    }

    void sendsNothing()
    {
        QFETCH(QByteArray, datagram);
        QFETCH(QByteArray, end);
        send(datagram.replace("%1", QByteArray::number(m_phone->localPort())));
        QTRY_COMPARE(m_lookup->ends, QList<QByteArray>({end}));

        // An answer would be at its port by now: the server's own, or the telephone's, in front of
        // the answer to the next request.
        subscribe(otherKnownMac);
        QVERIFY(isAnsweredOnly(otherKnownMac));
        QCOMPARE(m_lookup->ends, QList<QByteArray>({end, "accepted"}));
    }

    void answersTheLaterOfTwo()
    {
        // Both are there before the event loop turns.
        subscribe(knownMac);
        subscribe(otherKnownMac);
        QVERIFY(isAnsweredOnly(otherKnownMac));
        subscribe(knownMac);
        QVERIFY(isAnsweredOnly(knownMac));
        QCOMPARE(m_lookup->asked, QList<QByteArray>({otherKnownMac, knownMac}));
        QCOMPARE(m_lookup->ends.first(), QByteArray("repeated"));
    }

    void answersEveryTelephoneOfABurst()
    {
        std::array<QUdpSocket, 100> phones;
        for (QUdpSocket &phone : phones) {
            QVERIFY(phone.bind(loopback, 0));
            phone.writeDatagram(pnpSubscribe(knownMac, address(phone), "KTP2135"), loopback,
                                sipPort);
        }
        for (const QUdpSocket &phone : phones)
            QTRY_VERIFY(phone.hasPendingDatagrams());
        // That was as much as one address gets.
        subscribe(knownMac);
        QTRY_COMPARE(m_lookup->ends.last(), QByteArray("too many"));
        // It may ask as often as it likes: the telephone beside it is answered.
        for (int i = 0; i < 2000; ++i)
            subscribe(knownMac);
        QUdpSocket neighbour;
        QVERIFY(neighbour.bind(QHostAddress(QStringLiteral("127.0.0.2")), 0));
        const auto isAnswered = [&] {
            neighbour.writeDatagram(
                pnpSubscribe(otherKnownMac,
                             "127.0.0.2:" + QByteArray::number(neighbour.localPort()), "KTP2135"),
                loopback, sipPort);
            return neighbour.hasPendingDatagrams();
        };
        QTRY_VERIFY(isAnswered());
    }

    void startsAndStops()
    {
        QUdpSocket other;
        QVERIFY(other.bind(QHostAddress::AnyIPv4, sipPort, QAbstractSocket::DontShareAddress));
        QVERIFY(!m_server->start());
        QVERIFY(!m_server->stop());
        other.close();
        for (int i = 0; i < 3; ++i) {
            QVERIFY(m_server->start());
            QVERIFY(!m_server->start()); // and it goes on
            subscribe(knownMac);
            QVERIFY(isAnsweredOnly(knownMac));
            QVERIFY(m_server->stop());
            QVERIFY(isPortFree(sipPort));
            QVERIFY(!m_server->stop());
        }
    }

private:
    QByteArray address(const QUdpSocket &phone) const
    {
        return "127.0.0.1:" + QByteArray::number(phone.localPort());
    }
    void subscribe(const QByteArray &mac, const QByteArray &model = "KTP2135")
    {
        send(pnpSubscribe(mac, address(*m_phone), model));
    }
    void send(const QByteArray &datagram)
    {
        QCOMPARE(m_phone->writeDatagram(datagram, loopback, sipPort), qint64(datagram.size()));
    }
    /// The next datagram that comes to the telephone; empty when none does in time, or from another
    /// port than the answers'.
    QByteArray received()
    {
        if (!QTest::qWaitFor([this] { return m_phone->hasPendingDatagrams(); }))
            return QByteArray();
        QByteArray datagram(int(m_phone->pendingDatagramSize()), Qt::Uninitialized);
        quint16 port = 0;
        m_phone->readDatagram(datagram.data(), datagram.size(), &m_answerFrom, &port);
        return port == replyPort ? datagram : QByteArray();
    }

    /// Whether the next two datagrams to come are the answers to this known telephone.
    bool isAnsweredOnly(const QByteArray &mac)
    {
        const QByteArray accepted = received();
        return accepted.startsWith("SIP/2.0 202 Accepted subscription\r\n") &&
               accepted.contains("%3A" + mac + "@") && received().startsWith("NOTIFY sip:");
    }

    std::unique_ptr<FakeLookup> m_lookup;
    std::unique_ptr<PnPServer> m_server;
    std::unique_ptr<QUdpSocket> m_phone;
    QHostAddress m_answerFrom; ///< where the last received datagram came from
};

QTEST_GUILESS_MAIN(TestPnPServer)
#include "tst_pnpserver.moc"
