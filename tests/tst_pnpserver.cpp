#include "PnPSubscribe.h"
#include "model/DebugLog.h"
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
        m_asked.append(mac.toLatin1());
        return mac.toLatin1() == knownMac || mac.toLatin1() == otherKnownMac;
    }

    void subscribeEnded(const RequestEnd &request) override
    {
        m_ends.append(QLatin1String(RequestEnd::word(request.outcome)));
    }

    QList<QByteArray> asked() const { return m_asked; }
    QStringList ends() const { return m_ends; }

private:
    QStringList m_ends;
    mutable QList<QByteArray> m_asked;
};

QStringList &debugLines()
{
    static QStringList lines;
    return lines;
}

QtMessageHandler usualHandler = nullptr;

void keepDebugLine(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg)
        debugLines().append(text);
    else
        usualHandler(type, context, text);
}

QHostAddress loopback()
{
    return QHostAddress(QHostAddress::LocalHost);
}

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
    void initTestCase();
    void init();
    void cleanup();

    void tellsAKnownTelephoneWhereItsFileIs();
    void refusesAnUnknownTelephone();
    void sendsNothing_data();
    void sendsNothing();
    void answersTheLaterOfTwo();
    void answersEveryTelephoneOfABurst();
    void startsAndStops();

private:
    QByteArray phoneAddress() const;
    void send(const QByteArray &datagram);
    QByteArray received();
    bool isAnsweredOnly(const QByteArray &mac);

    std::unique_ptr<FakeLookup> m_lookup;
    std::unique_ptr<PnPServer> m_server;
    std::unique_ptr<QUdpSocket> m_phone;
    QHostAddress m_answerFrom; ///< where the last received datagram came from
    quint16 m_answerFromPort = 0;
};

void TestPnPServer::initTestCase()
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

void TestPnPServer::init()
{
    m_lookup = std::make_unique<FakeLookup>();
    m_server = std::make_unique<PnPServer>(*m_lookup);
    m_server->setHttpdAddress(QStringLiteral("127.0.0.1"), QStringLiteral("80"));
    m_phone = std::make_unique<QUdpSocket>();
    QVERIFY(m_phone->bind(loopback(), 0));
    debugLines().clear();
    usualHandler = qInstallMessageHandler(keepDebugLine);
    debugLog().setEnabled(QtDebugMsg, true);
}

void TestPnPServer::cleanup()
{
    debugLog().setEnabled(QtDebugMsg, false);
    qInstallMessageHandler(usualHandler);
    m_server.reset();
    m_phone.reset();
    m_lookup.reset();
}

QByteArray TestPnPServer::phoneAddress() const
{
    return "127.0.0.1:" + QByteArray::number(m_phone->localPort());
}

void TestPnPServer::send(const QByteArray &datagram)
{
    QCOMPARE(m_phone->writeDatagram(datagram, loopback(), sipPort), qint64(datagram.size()));
}

/// The next datagram that comes to the telephone; empty when none does in time.
QByteArray TestPnPServer::received()
{
    if (!QTest::qWaitFor([this] { return m_phone->hasPendingDatagrams(); }))
        return QByteArray();
    QByteArray datagram(int(m_phone->pendingDatagramSize()), Qt::Uninitialized);
    m_phone->readDatagram(datagram.data(), datagram.size(), &m_answerFrom, &m_answerFromPort);
    return datagram;
}

/// Whether the next two datagrams to come are the answers to this known telephone.
bool TestPnPServer::isAnsweredOnly(const QByteArray &mac)
{
    const QByteArray accepted = received();
    const QByteArray notify = received();
    return accepted.startsWith("SIP/2.0 202 Accepted subscription\r\n") &&
           accepted.contains("%3A" + mac + "@") && notify.startsWith("NOTIFY sip:");
}

void TestPnPServer::tellsAKnownTelephoneWhereItsFileIs()
{
    QVERIFY(m_server->start());
    send(pnpSubscribe(knownMac, phoneAddress(), "KTP2135"));
    const QByteArray accepted = received();
    QVERIFY2(accepted.startsWith("SIP/2.0 202 Accepted subscription\r\n"), accepted);
    QCOMPARE(m_answerFromPort, replyPort);
    const QByteArray notify = received();
    QVERIFY2(notify.startsWith("NOTIFY sip:" + phoneAddress() + " SIP/2.0\r\n"), notify);
    QVERIFY2(notify.endsWith("\r\nContent-Length:    20\r\n\r\nhttp://127.0.0.1:80/"), notify);
    QCOMPARE(m_answerFromPort, replyPort);

    // The service was closed and opened on another card and port meanwhile.
    m_server->setHttpdAddress(QStringLiteral("127.0.0.2"), QStringLiteral("5001"));
    // The answer goes where the request says, not where it came from.
    QUdpSocket sender;
    QVERIFY(sender.bind(loopback(), 0));
    sender.writeDatagram(pnpSubscribe(knownMac, phoneAddress(), "DK71X"), loopback(), sipPort);
    QVERIFY(received().startsWith("SIP/2.0 202 "));
    QVERIFY(received().endsWith("\r\n\r\nhttp://127.0.0.2:5001"));
    QCOMPARE(m_answerFrom, QHostAddress(QStringLiteral("127.0.0.2")));
    QCOMPARE(m_answerFromPort, replyPort);
}

void TestPnPServer::refusesAnUnknownTelephone()
{
    QVERIFY(m_server->start());
    send(pnpSubscribe(unknownMac, phoneAddress(), "KTP2135"));
    const QByteArray refused = received();
    QVERIFY2(refused.startsWith("SIP/2.0 501 Not Implemented\r\n"), refused);
    QVERIFY(refused.contains("\r\nFrom: <sip:MAC%3A" + QByteArray(unknownMac) +
                             "@127.0.0.1>;tag=5150\r\n"));
    // What comes next is the answer to somebody else.
    send(pnpSubscribe(knownMac, phoneAddress(), "KTP2135"));
    QVERIFY(isAnsweredOnly(knownMac));
    QCOMPARE(m_lookup->asked(), QList<QByteArray>({unknownMac, knownMac}));
    QCOMPARE(m_lookup->ends(),
             QStringList({QStringLiteral("not listed"), QStringLiteral("accepted")}));
}

void TestPnPServer::sendsNothing_data()
{
    QTest::addColumn<QByteArray>("datagram");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("end");
    const QByteArray phone = "127.0.0.1:%1"; // filled in when its port is known
    const auto from = [](const QByteArray &address) {
        return pnpSubscribe(knownMac, address, "KTP2135");
    };
    const QString noMac = QStringLiteral("Can not find requestor's Mac address.");
    const QString own = QStringLiteral("The answer would come back to this server.");

    QTest::newRow("largest") << QByteArray(65507, '@') << noMac << QStringLiteral("malformed");
    QTest::newRow("known, no model")
        << from(phone).replace("model=", "") << QStringLiteral("Can not find model in event str.")
        << QStringLiteral("malformed");
    QTest::newRow("this server") << from("127.0.0.1:5060") << own << QStringLiteral("own address");
    QTest::newRow("everybody on the network")
        << from("127.255.255.255:9") << own << QStringLiteral("own address");
    QTest::newRow("another network")
        << from("203.0.113.77:9") << QStringLiteral("The answer would go to another network.")
        << QStringLiteral("far address");
    QTest::newRow("swelling") << from(phone).replace(
                                     ";branch", QByteArray(400, '\xff').prepend(':') + ";branch")
                              << QStringLiteral("The answer would be far longer than the request.")
                              << QStringLiteral("too brief");
}

void TestPnPServer::sendsNothing()
{
    QFETCH(QByteArray, datagram);
    QFETCH(QString, reason);
    QVERIFY(m_server->start());
    debugLines().clear();
    send(datagram.replace("%1", QByteArray::number(m_phone->localPort())));
    // qDebug puts a QString between quotes, a plain text not.
    QTRY_VERIFY2(debugLines().contains(reason), qPrintable(debugLines().join(QLatin1Char('\n'))));

    // An answer would be at its port by now: the server's own, or the telephone's, in front of the
    // answer to the next request.
    QCoreApplication::processEvents();
    QCOMPARE(debugLines().filter(QStringLiteral("arrived request datagram")).size(), 1);
    send(pnpSubscribe(otherKnownMac, phoneAddress(), "KTP2135"));
    QVERIFY(isAnsweredOnly(otherKnownMac));
    QFETCH(QString, end);
    QCOMPARE(m_lookup->ends(), QStringList({end, QStringLiteral("accepted")}));
}

void TestPnPServer::answersTheLaterOfTwo()
{
    QVERIFY(m_server->start());
    // Both are there before the event loop turns.
    send(pnpSubscribe(knownMac, phoneAddress(), "KTP2135"));
    send(pnpSubscribe(otherKnownMac, phoneAddress(), "KTP2135"));
    QVERIFY(isAnsweredOnly(otherKnownMac));
    send(pnpSubscribe(knownMac, phoneAddress(), "KTP2135"));
    QVERIFY(isAnsweredOnly(knownMac));
    QCOMPARE(m_lookup->asked(), QList<QByteArray>({otherKnownMac, knownMac}));
    QCOMPARE(m_lookup->ends().first(), QStringLiteral("repeated"));
}

void TestPnPServer::answersEveryTelephoneOfABurst()
{
    QVERIFY(m_server->start());
    std::array<QUdpSocket, 100> phones;
    for (QUdpSocket &phone : phones) {
        QVERIFY(phone.bind(loopback(), 0));
        const QByteArray address = "127.0.0.1:" + QByteArray::number(phone.localPort());
        phone.writeDatagram(pnpSubscribe(knownMac, address, "KTP2135"), loopback(), sipPort);
    }
    for (const QUdpSocket &phone : phones)
        QTRY_VERIFY(phone.hasPendingDatagrams());

    // That was as much as one address gets.
    debugLines().clear();
    send(pnpSubscribe(knownMac, phoneAddress(), "KTP2135"));
    QTRY_VERIFY(debugLines().contains(QStringLiteral("Answered too often already.")));
    QCOMPARE(m_lookup->ends().last(), QStringLiteral("too many"));
}

void TestPnPServer::startsAndStops()
{
    QUdpSocket other;
    QVERIFY(other.bind(QHostAddress::AnyIPv4, sipPort, QAbstractSocket::DontShareAddress));
    QVERIFY(!m_server->start());
    QVERIFY(!m_server->stop());
    other.close();
    for (int i = 0; i < 3; ++i) {
        QVERIFY(m_server->start());
        QVERIFY(!m_server->start()); // and it goes on
        send(pnpSubscribe(knownMac, phoneAddress(), "KTP2135"));
        QVERIFY(isAnsweredOnly(knownMac));
        QVERIFY(m_server->stop());
        QVERIFY(isPortFree(sipPort));
        QVERIFY(!m_server->stop());
    }
}

QTEST_GUILESS_MAIN(TestPnPServer)
#include "tst_pnpserver.moc"
