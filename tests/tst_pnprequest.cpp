#include "PnPSubscribe.h"
#include "net/PnPGuard.h"
#include "net/PnPMessages.h"
#include "net/PnPRequest.h"

#include <QHostAddress>
#include <QStringList>
#include <QTest>

#include <array>
#include <numeric>

using namespace std::chrono_literals;

namespace {

QByteArray standard()
{
    return pnpSubscribe("0200a7000001", "192.168.10.20:5062", "KTP2135");
}

const char standardCallId[] = "88200314-0200a7000001@phone";

/// What a telephone's datagram looks like with `from` said differently.
QByteArray standardWith(const QByteArray &from, const QByteArray &to)
{
    Q_ASSERT(standard().contains(from));
    return standard().replace(from, to);
}

/// Of a PC with two cards and a tunnel.
PnPGuard guardOfTwoCards()
{
    QList<QNetworkAddressEntry> addresses;
    for (const auto &[ip, prefixLength] : {std::pair("127.0.0.1", 8), std::pair("192.168.10.1", 24),
                                           std::pair("10.0.0.1", 8), std::pair("172.16.0.1", 32)}) {
        addresses.append(QNetworkAddressEntry());
        addresses.last().setIp(QHostAddress(QLatin1String(ip)));
        addresses.last().setPrefixLength(prefixLength);
    }
    PnPGuard guard;
    guard.setNetworks(addresses);
    return guard;
}

const QString local = QStringLiteral("192.168.10.1");
const QString url = QStringLiteral("http://192.168.10.1:8080");

constexpr int largestPayload = 65507; // of a UDP datagram

} // namespace

/// What plug and play decides and says, without a socket.
class TestPnPRequest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void messages();
    void folderOfTheFile();
    void whoIsAnswered();
    void howOften_data();
    void howOften();
};

void TestPnPRequest::reads_data()
{
    QTest::addColumn<QByteArray>("datagram");
    QTest::addColumn<int>("stoppedAt");
    QTest::addColumn<QString>("fields"); // some of those that are read, each between bars

    const auto complete = [](const char *name, const QByteArray &datagram, const char *fields) {
        QTest::newRow(name) << datagram << int(PnPRequest::Complete) << QString::fromLatin1(fields);
    };
    const auto stops = [](const char *name, const QByteArray &datagram, PnPRequest::Step step) {
        QTest::newRow(name) << datagram << int(step) << QString();
    };
    const auto via = [](const char *value) { return standardWith("192.168.10.20:5062;", value); };
    const auto callId = [](const QByteArray &value) { return standardWith(standardCallId, value); };
    const auto event = [](const char *value) {
        return standardWith("ua-profile;profile-type=\"device\";vendor=\"phone\";"
                            "model=\"KTP2135\";version=\"1.0\"",
                            value);
    };
    const QByteArray mac = "0200a7000001@224.0.1.75 SIP";

    complete("as telephones send it", standard(),
             "|0200a7000001|192.168.10.20:5062|192.168.10.20|5062|branch=z9hG4bK770412|tag=5150|"
             "88200314-0200a7000001@phone|2001 SUBSCRIBE|ua-profile;profile-type=\"device\";"
             "vendor=\"phone\";model=\"KTP2135\";version=\"1.0\"|KTP2135|");
    complete("MAC as it stands", standardWith(mac, "00:zZ:*\xe9 <x>@ SIP"), "|00:zZ:*\xe9 <x>|");
    stops("empty", "", PnPRequest::MacAddress);
    stops("largest, no at sign", QByteArray(largestPayload, 'a'), PnPRequest::MacAddress);
    stops("line end in the MAC", standardWith(mac, "0200a7\r\n0001@ SIP"), PnPRequest::MacAddress);
    for (const char *address :
         {"192.168.10.20;", "192.168.10.20:65536;", "0.0.0.0:5062;", "phone.local:5062;",
          "224.0.1.75:5060;", "255.255.255.255:5062;", "192.168.10.20:5062\r\n;"})
        stops(address, via(address), PnPRequest::AddressAndPort);
    complete("blanks and the last port", via(" 192.168.10.20 : 65535 ;"),
             "| 192.168.10.20 : 65535 | 192.168.10.20 |65535|");
    complete("a third part", via("192.168.10.20::5062:x;"),
             "|192.168.10.20::5062:x|192.168.10.20|5062|");
    complete("the first of two",
             standardWith("From: ", "Via: SIP/2.0/UDP 10.0.0.9:9;branch=other\r\nFrom: "),
             "|192.168.10.20:5062|192.168.10.20|5062|branch=z9hG4bK770412|");
    complete("the rest of the branch's line", standardWith("770412\r", "770412;rport;alias\r"),
             "|branch=z9hG4bK770412;rport;alias|");
    stops("bare line feeds", standard().replace("\r\n", "\n"), PnPRequest::Branch);
    stops("CR in the tag", standardWith("5150", "5\r150"), PnPRequest::FromTag);
    stops("Call-ID without a blank", standardWith("Call-ID: ", "Call-ID:"), PnPRequest::CallId);
    const QByteArray longest(512, 'a');
    complete("longest Call-ID", callId(longest), "|" + longest + "|");
    stops("longer Call-ID", callId(longest + 'a'), PnPRequest::CallId);
    complete("broken UTF-8", callId("\xff\xc3(\x80"), "|\xff\xc3(\x80|");
    stops("LF in the CSeq", standardWith("2001 ", "2001\n"), PnPRequest::Cseq);
    complete("an empty value", standardWith("2001 SUBSCRIBE", ""), "@phone||ua-profile;");
    stops("cut in the event", standard().left(standard().indexOf(";version")), PnPRequest::Event);
    complete("largest datagram, the request behind 60,000 others",
             QByteArray(largestPayload - standard().size(), 'x') + standard(), "|KTP2135|");
    stops("no model", event("ua-profile;vendor=\"phone\""), PnPRequest::Model);
    stops("no closing quote", event("ua-profile;model=\"KTP2135"), PnPRequest::Model);
    stops("model in the next line", event("ua-profile\r\nX: model=\"KTP2135\""), PnPRequest::Model);
    complete("empty model", event("model=\"\""), "|model=\"\"||");
    complete("no quote in front", event("model=KTP2135\""), "|model=KTP2135\"|TP2135|");

    // Each thing that is looked for is missing, with all that comes after it.
    QByteArray missing = standard();
    int step = PnPRequest::Model;
    for (const char *mark :
         {"model=", "Event: ", "CSeq: ", "Call-ID: ", "tag=", "branch=", "Via: SIP/2.0/UDP ", "@"})
        stops(mark, missing.replace(mark, "-"), PnPRequest::Step(step--));

    QByteArray cut = standard();
    cut[cut.indexOf("5150")] = '\0';
    stops("a NUL ends the text", cut, PnPRequest::FromTag);
    complete("rubbish behind a NUL", standard() + QByteArray(1, '\0') + "@Via: SIP/2.0/UDP ",
             "|0200a7000001|192.168.10.20:5062|");
}

void TestPnPRequest::reads()
{
    QFETCH(QByteArray, datagram);
    QFETCH(QString, fields);
    const PnPRequest read = PnPRequest::parse(datagram);
    QTEST(int(read.stoppedAt), "stoppedAt");
    const QString all = QStringList({QString(), read.macAddress, read.addressAndPort, read.address,
                                     QString::number(read.port), read.branch, read.fromTag,
                                     read.callId, read.cseq, read.event, read.model, QString()})
                            .join(QLatin1Char('|'));
    QVERIFY2(all.contains(fields), qPrintable(all));
}

void TestPnPRequest::messages()
{
    const QByteArray allow = "Allow: INVITE, ACK, OPTIONS, CANCEL, BYE, SUBSCRIBE, NOTIFY, INFO, "
                             "REFER, UPDATE, MESSAGE\r\n";
    const QByteArray notImplemented =
        "SIP/2.0 501 Not Implemented\r\n"
        "Via: SIP/2.0/UDP 192.168.10.20:5062;branch=z9hG4bK770412\r\n"
        "From: <sip:MAC%3A0200a7000001@192.168.10.1>;tag=5150\r\n"
        "To: <sip:MAC%3A0200a7000001@192.168.10.1>;tag=1882999294\r\n"
        "Call-ID: 88200314-0200a7000001@phone\r\n"
        "CSeq: 2001 SUBSCRIBE\r\n"
        "Event: ua-profile;profile-type=\"device\";vendor=\"phone\";model=\"KTP2135\";"
        "version=\"1.0\"\r\n"
        "Supported: replaces, path, eventlist\r\n"
        "User-Agent: VlManager 1.0\r\n" +
        allow + "Content-Length: 0\r\n\r\n";
    const QByteArray accepted = QByteArray(notImplemented)
                                    .replace("501 Not Implemented", "202 Accepted subscription")
                                    .replace("@192.168.10.1>", "@224.0.1.75>")
                                    .replace("1882999294", "920204859");
    const QByteArray notify =
        "NOTIFY sip:192.168.10.20:5062 SIP/2.0\r\n"
        "Via: SIP/2.0/UDP 192.168.10.1:5080;branch=z9hG4bK1168558332;rport\r\n"
        "From: <sip:192.168.10.1:5080>;tag=5150\r\n"
        "To: <sip:192.168.10.20:5062>\r\n"
        "Call-ID: 815617134-5080-1@vlmanager\r\n"
        "CSeq: 10 NOTIFY\r\n"
        "Contact: <sip:192.168.10.1:5080>\r\n"
        "Max-Forwards: 70\r\n"
        "User-Agent: VlManager 1.0\r\n"
        "Event: ua-profile\r\n"
        "Content-Type: application/url\r\n" +
        allow + "Content-Length:    25\r\n\r\nhttp://192.168.10.1:8080/";

    // The datagram's bytes are Latin-1, the answers' UTF-8.
    for (const QByteArray id : {standardCallId, "\xe9"}) {
        const PnPRequest request = PnPRequest::parse(standardWith(standardCallId, id));
        const auto answer = [&](QByteArray text) {
            return text.replace(standardCallId, QString::fromLatin1(id).toUtf8());
        };
        QCOMPARE(PnPMessages::notImplemented(request, local).toUtf8(), answer(notImplemented));
        QCOMPARE(PnPMessages::accepted(request).toUtf8(), answer(accepted));
        QCOMPARE(PnPMessages::notify(request, local, url).toUtf8(), notify);
    }
}

void TestPnPRequest::folderOfTheFile()
{
    for (const auto &[model, slash] :
         {std::pair("KTP2135", "/"), std::pair("ktp2200", "/"), std::pair("KTP2200 ", "/"),
          std::pair("KTP2200", ""), std::pair("DK71X", ""), std::pair("MKTP2135", "")}) {
        const PnPRequest request =
            PnPRequest::parse(pnpSubscribe("0200a7000001", "192.168.10.20:5062", model));
        QCOMPARE(PnPMessages::notify(request, local, url).section(QLatin1String("\r\n\r\n"), 1),
                 url + QLatin1String(slash));
    }
}

void TestPnPRequest::whoIsAnswered()
{
    struct Case
    {
        const char *name, *sender, *address;
        quint16 port;
        int requestSize, answerSize;
        PnPGuard::Verdict verdict;
    };
    const char phone[] = "192.168.10.20";
    const char far[] = "203.0.113.9";
    const std::array<Case, 16> cases = {{
        {"itself", phone, phone, 5062, 500, 1050, PnPGuard::Allowed},
        {"itself, from behind a router", far, far, 5060, 500, 1050, PnPGuard::Allowed},
        {"a neighbour", far, phone, 5062, 500, 1050, PnPGuard::Allowed},
        {"on the other card's network", phone, "10.1.2.3", 5062, 500, 1050, PnPGuard::Allowed},
        {"behind a router", phone, far, 5062, 500, 1050, PnPGuard::OtherNetwork},
        {"beside a single address", phone, "172.16.0.2", 5062, 500, 1050, PnPGuard::OtherNetwork},
        {"loopback", "127.0.0.1", "127.8.9.10", 5062, 500, 1050, PnPGuard::Allowed},
        {"loopback from outside", phone, "127.0.0.1", 5062, 500, 1050, PnPGuard::OtherNetwork},
        {"this server", phone, "192.168.10.1", 5060, 500, 1050, PnPGuard::ComesBack},
        {"this, on loopback", "127.0.0.1", "127.8.9.10", 5060, 500, 1050, PnPGuard::ComesBack},
        {"everybody", phone, "192.168.10.255", 5062, 500, 1050, PnPGuard::ComesBack},
        {"everybody, the old way", phone, "192.168.10.0", 5062, 500, 1050, PnPGuard::ComesBack},
        {"three times as long", phone, phone, 5062, 500, 1500, PnPGuard::Allowed},
        {"longer", phone, phone, 5062, 500, 1501, PnPGuard::TooLong},
        {"brief", phone, phone, 5062, 180, 1100, PnPGuard::Allowed},
        {"brief, with a long answer", phone, phone, 5062, 366, 1101, PnPGuard::TooLong},
    }};
    for (const Case &c : cases) {
        const PnPGuard::Exchange exchange = {QHostAddress(QLatin1String(c.sender)),
                                             QHostAddress(QLatin1String(c.address)),
                                             c.port,
                                             c.requestSize,
                                             c.answerSize,
                                             2};
        QVERIFY2(guardOfTwoCards().judge(exchange, 0ms) == c.verdict, c.name);
    }
}

void TestPnPRequest::howOften_data()
{
    QTest::addColumn<int>("senders");
    QTest::addColumn<int>("addresses");
    QTest::addColumn<int>("firstSecond"); // datagrams in it
    QTest::addColumn<int>("tenSeconds");
    QTest::newRow("one host") << 1 << 1 << 218 << 398;
    QTest::newRow("one host that names others") << 1 << 200 << 218 << 398;
    QTest::newRow("many that name one") << 200 << 1 << 118 << 298;
    QTest::newRow("as many as there are") << 60000 << 60000 << 398 << 2198;
}

/// A flood of 2,000 requests a second.
void TestPnPRequest::howOften()
{
    QFETCH(int, senders);
    QFETCH(int, addresses);
    PnPGuard guard = guardOfTwoCards();
    const auto ask = [&](int sender, int address, PnPGuard::Time now) {
        constexpr quint32 network = 10U << 24;
        return guard.judge({QHostAddress(network + 2 + quint32(sender)),
                            QHostAddress(network + 2 + quint32(address)), 5062, 500, 1050, 2},
                           now) == PnPGuard::Allowed;
    };
    std::array<int, 10> inSecond = {};
    for (int request = 0; request < 20000; ++request) {
        // Among many, the one that is named is not itself one that asks.
        const int sender = request % senders + (senders > addresses ? 1 : 0);
        if (ask(sender, request % addresses, request * 1ms / 2))
            inSecond.at(size_t(request / 2000)) += 2;
    }
    QTEST(inSecond.front(), "firstSecond");
    QTEST(std::accumulate(inSecond.begin(), inSecond.end(), 0), "tenSeconds");

    // Who is named that often can still ask for itself.
    if (senders > 1)
        QVERIFY(ask(0, 0, 10s));
    // A second of quiet, and a hundred telephones boot at the same instant.
    for (int phone = 0; phone < 100; ++phone)
        QVERIFY(ask(70000 + phone, 70000 + phone, 11s));
}

QTEST_APPLESS_MAIN(TestPnPRequest)
#include "tst_pnprequest.moc"
