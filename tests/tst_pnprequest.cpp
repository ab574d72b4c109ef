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

const char standardEvent[] = "ua-profile;profile-type=\"device\";vendor=\"phone\";"
                             "model=\"KTP2135\";version=\"1.0\"";

/// What a telephone's datagram looks like with `from` said differently.
QByteArray standardWith(const QByteArray &from, const QByteArray &to)
{
    Q_ASSERT(standard().contains(from));
    return standard().replace(from, to);
}

QByteArray withVia(const QByteArray &value)
{
    return standardWith("192.168.10.20:5062;", value);
}

QByteArray withEvent(const QByteArray &value)
{
    return standardWith(standardEvent, value);
}

/// All that was read, a line for each field; the fields behind the last one are empty.
QStringList fieldsOf(const PnPRequest &request)
{
    QStringList fields = {
        request.macAddress, request.addressAndPort,
        request.address,    request.port ? QString::number(request.port) : QString(),
        request.branch,     request.fromTag,
        request.callId,     request.cseq,
        request.event,      request.model};
    while (!fields.isEmpty() && fields.last().isEmpty())
        fields.removeLast();
    return fields;
}

/// What is read of the standard datagram when something goes wrong at this step.
QStringList standardFields(PnPRequest::Step step = PnPRequest::Complete)
{
    const QStringList all = {QStringLiteral("0200a7000001"),
                             QStringLiteral("192.168.10.20:5062"),
                             QStringLiteral("192.168.10.20"),
                             QStringLiteral("5062"),
                             QStringLiteral("branch=z9hG4bK770412"),
                             QStringLiteral("tag=5150"),
                             QStringLiteral("88200314-0200a7000001@phone"),
                             QStringLiteral("2001 SUBSCRIBE"),
                             QString::fromLatin1(standardEvent),
                             QStringLiteral("KTP2135")};
    // The address and the port are read in one step, and stand there as two fields as well.
    return all.mid(0, step > PnPRequest::AddressAndPort ? step + 2 : step);
}

QStringList standardFieldsWith(int index, const QString &value)
{
    QStringList fields = standardFields();
    fields[index] = value;
    return fields;
}

/// Of a PC with two cards and a tunnel.
PnPGuard guardOfTwoCards()
{
    QList<QNetworkAddressEntry> addresses;
    const auto add = [&](const char *ip, int prefixLength) {
        QNetworkAddressEntry entry;
        entry.setIp(QHostAddress(QLatin1String(ip)));
        entry.setPrefixLength(prefixLength);
        addresses.append(entry);
    };
    add("127.0.0.1", 8);
    add("192.168.10.1", 24);
    add("10.0.0.1", 8);
    add("172.16.0.1", 32);
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
    void stopsAtTheFirstThatIsMissing();
    void messages();
    void folderOfTheFile();
    void whoIsAnswered_data();
    void whoIsAnswered();
    void howOften_data();
    void howOften();
};

void TestPnPRequest::reads_data()
{
    QTest::addColumn<QByteArray>("datagram");
    QTest::addColumn<int>("stoppedAt");
    QTest::addColumn<QStringList>("fields");

    const auto complete = [](const char *name, const QByteArray &datagram,
                             const QStringList &fields = standardFields()) {
        QTest::newRow(name) << datagram << int(PnPRequest::Complete) << fields;
    };
    const auto stops = [](const char *name, const QByteArray &datagram, PnPRequest::Step step) {
        QTest::newRow(name) << datagram << int(step) << standardFields(step);
    };
    const auto noAddress = [&](const char *name, const QByteArray &viaValue) {
        stops(name, withVia(viaValue), PnPRequest::AddressAndPort);
    };

    complete("as telephones send it", standard());

    complete("MAC as it stands",
             standardWith("0200a7000001@224.0.1.75 SIP", "00:zZ:*\xe9 <x>@ SIP"),
             standardFieldsWith(0, QStringLiteral("00:zZ:*\u00e9 <x>")));
    stops("empty", "", PnPRequest::MacAddress);
    stops("largest, no at sign", QByteArray(largestPayload, 'a'), PnPRequest::MacAddress);

    noAddress("no port", "192.168.10.20;");
    noAddress("port 65536", "192.168.10.20:65536;");
    noAddress("this host", "0.0.0.0:5062;");
    noAddress("host name", "phone.local:5062;");
    noAddress("multicast group", "224.0.1.75:5060;");
    noAddress("broadcast", "255.255.255.255:5062;");
    noAddress("line end behind the port", "192.168.10.20:5062\r\n;");
    QStringList fields = standardFieldsWith(1, QStringLiteral(" 192.168.10.20 : 65535 "));
    fields[2] = QStringLiteral(" 192.168.10.20 ");
    fields[3] = QStringLiteral("65535");
    complete("blanks and the last port", withVia(" 192.168.10.20 : 65535 ;"), fields);
    complete("a third part", withVia("192.168.10.20::5062:x;"),
             standardFieldsWith(1, QStringLiteral("192.168.10.20::5062:x")));
    complete("the first of two",
             standardWith("From: ", "Via: SIP/2.0/UDP 10.0.0.9:9;branch=other\r\nFrom: "));

    complete("the rest of the branch's line", standardWith("770412\r", "770412;rport;alias\r"),
             standardFieldsWith(4, QStringLiteral("branch=z9hG4bK770412;rport;alias")));
    stops("bare line feeds", standard().replace("\r\n", "\n"), PnPRequest::Branch);
    stops("Call-ID without a blank", standardWith("Call-ID: ", "Call-ID:"), PnPRequest::CallId);
    stops("line end in the MAC", standardWith("0200a7000001@224.0.1.75 SIP", "0200a7\r\n0001@ SIP"),
          PnPRequest::MacAddress);
    stops("CR in the tag", standardWith("5150", "5\r150"), PnPRequest::FromTag);
    stops("LF in the CSeq", standardWith("2001 ", "2001\n"), PnPRequest::Cseq);
    const QByteArray longest(512, 'a');
    complete("longest Call-ID", standardWith("88200314-0200a7000001@phone", longest),
             standardFieldsWith(6, QString::fromLatin1(longest)));
    stops("longer Call-ID", standardWith("88200314-0200a7000001@phone", longest + 'a'),
          PnPRequest::CallId);
    stops("cut in the event", standard().left(standard().indexOf(";version")), PnPRequest::Event);
    complete("an empty value", standardWith("2001 SUBSCRIBE", ""),
             standardFieldsWith(7, QString()));
    complete("broken UTF-8", standardWith("88200314-0200a7000001@phone", "\xff\xc3(\x80"),
             standardFieldsWith(6, QStringLiteral("\u00ff\u00c3(\u0080")));
    complete("largest datagram, the request behind 60,000 others",
             QByteArray(largestPayload - standard().size(), 'x') + standard());

    // Null for `read`: no model can be found.
    const auto modelOf = [](const char *name, const QByteArray &event, const QString &read) {
        const QString line = QString::fromLatin1(event).section(QLatin1String("\r\n"), 0, 0);
        QStringList expected = standardFieldsWith(8, line);
        expected[9] = read;
        while (expected.last().isEmpty())
            expected.removeLast();
        QTest::newRow(name) << withEvent(event)
                            << int(read.isNull() ? PnPRequest::Model : PnPRequest::Complete)
                            << expected;
    };
    modelOf("no model", "ua-profile;vendor=\"phone\"", QString());
    modelOf("no closing quote", "ua-profile;model=\"KTP2135", QString());
    modelOf("empty event", "", QString());
    modelOf("model in the next line", "ua-profile\r\nX: model=\"KTP2135\"", QString());
    modelOf("empty model", "model=\"\"", QLatin1String(""));
    modelOf("no quote in front", "model=KTP2135\"", QStringLiteral("TP2135"));

    QByteArray cut = standard();
    cut[cut.indexOf("5150")] = '\0';
    stops("a NUL ends the text", cut, PnPRequest::FromTag);
    complete("rubbish behind a NUL", standard() + QByteArray(1, '\0') + "@Via: SIP/2.0/UDP ");
}

void TestPnPRequest::reads()
{
    QFETCH(QByteArray, datagram);
    QFETCH(int, stoppedAt);
    QFETCH(QStringList, fields);

    const PnPRequest request = PnPRequest::parse(datagram);
    QCOMPARE(int(request.stoppedAt), stoppedAt);
    QCOMPARE(request.isComplete(), stoppedAt == PnPRequest::Complete);
    QCOMPARE(fieldsOf(request), fields);
}

/// Each thing that is looked for is missing, once alone and once with all that comes after it.
void TestPnPRequest::stopsAtTheFirstThatIsMissing()
{
    const std::array<QByteArray, 8> marks = {
        "@", "Via: SIP/2.0/UDP ", "branch=", "tag=", "Call-ID: ", "CSeq: ", "Event: ", "model="};
    for (int first = 0; first < int(marks.size()); ++first) {
        QByteArray alone = standard();
        alone.replace(marks.at(size_t(first)), "-");
        QCOMPARE(int(PnPRequest::parse(alone).stoppedAt), first);
        QByteArray together = standard();
        for (int mark = first; mark < int(marks.size()); ++mark)
            together.replace(marks.at(size_t(mark)), "-");
        QCOMPARE(int(PnPRequest::parse(together).stoppedAt), first);
    }
}

void TestPnPRequest::messages()
{
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
        "User-Agent: VlManager 1.0\r\n"
        "Allow: INVITE, ACK, OPTIONS, CANCEL, BYE, SUBSCRIBE, NOTIFY, INFO, REFER, UPDATE, "
        "MESSAGE\r\n"
        "Content-Length: 0\r\n"
        "\r\n";
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
        "Content-Type: application/url\r\n"
        "Allow: INVITE, ACK, OPTIONS, CANCEL, BYE, SUBSCRIBE, NOTIFY, INFO, REFER, UPDATE, "
        "MESSAGE\r\n"
        "Content-Length:    25\r\n"
        "\r\n"
        "http://192.168.10.1:8080/";

    // The datagram's bytes are Latin-1, the answers' UTF-8.
    const QByteArray callId = "88200314-0200a7000001@phone";
    for (const QByteArray &id : {callId, QByteArray("\xe9")}) {
        const PnPRequest request = PnPRequest::parse(standardWith(callId, id));
        const auto answer = [&](QByteArray text) {
            return text.replace(callId, QString::fromLatin1(id).toUtf8());
        };
        QCOMPARE(PnPMessages::notImplemented(request, local).toUtf8(), answer(notImplemented));
        QCOMPARE(PnPMessages::accepted(request).toUtf8(), answer(accepted));
        QCOMPARE(PnPMessages::notify(request, local, url).toUtf8(), notify);
    }
}

void TestPnPRequest::folderOfTheFile()
{
    const auto folderFor = [](const char *model) {
        const PnPRequest request =
            PnPRequest::parse(pnpSubscribe("0200a7000001", "192.168.10.20:5062", model));
        return PnPMessages::notify(request, local, url).section(QLatin1String("\r\n\r\n"), 1);
    };
    for (const char *model : {"KTP2135", "ktp2200", "KTP2200 "})
        QCOMPARE(folderFor(model), url + QLatin1Char('/'));
    for (const char *model : {"KTP2200", "DK71X", "MKTP2135"})
        QCOMPARE(folderFor(model), url);
}

void TestPnPRequest::whoIsAnswered_data()
{
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("requestSize");
    QTest::addColumn<int>("answerSize");
    QTest::addColumn<int>("verdict");
    const auto row = [](const char *name, const char *sender, const char *address, int verdict,
                        int requestSize = 500, int answerSize = 1050) {
        QTest::newRow(name) << QString::fromLatin1(sender) << QString::fromLatin1(address)
                            << requestSize << answerSize << verdict;
    };
    const char phone[] = "192.168.10.20:5062";
    row("itself", "192.168.10.20", phone, PnPGuard::Allowed);
    row("itself, from behind a router", "203.0.113.9", "203.0.113.9:5060", PnPGuard::Allowed);
    row("a neighbour", "203.0.113.9", phone, PnPGuard::Allowed);
    row("on the other card's network", "192.168.10.20", "10.1.2.3:5062", PnPGuard::Allowed);
    row("behind a router", "192.168.10.20", "203.0.113.9:5062", PnPGuard::OtherNetwork);
    row("next to a single address", "192.168.10.20", "172.16.0.2:5062", PnPGuard::OtherNetwork);
    row("loopback", "127.0.0.1", "127.8.9.10:5062", PnPGuard::Allowed);
    row("loopback from outside", "192.168.10.20", "127.0.0.1:5062", PnPGuard::OtherNetwork);
    row("this server", "192.168.10.20", "192.168.10.1:5060", PnPGuard::ComesBack);
    row("this server on loopback", "127.0.0.1", "127.8.9.10:5060", PnPGuard::ComesBack);
    row("everybody", "192.168.10.20", "192.168.10.255:5062", PnPGuard::ComesBack);
    row("everybody, the old way", "192.168.10.20", "192.168.10.0:5062", PnPGuard::ComesBack);

    row("three times as long", "192.168.10.20", phone, PnPGuard::Allowed, 500, 1500);
    row("longer", "192.168.10.20", phone, PnPGuard::TooLong, 500, 1501);
    row("brief", "192.168.10.20", phone, PnPGuard::Allowed, 200, 1100);
    row("brief, with a long answer", "192.168.10.20", phone, PnPGuard::TooLong, 366, 1101);
    row("briefer than SIP allows", "192.168.10.20", phone, PnPGuard::TooLong, 199, 400);
}

void TestPnPRequest::whoIsAnswered()
{
    QFETCH(QString, sender);
    QFETCH(QString, address);
    QFETCH(int, requestSize);
    QFETCH(int, answerSize);
    PnPGuard guard = guardOfTwoCards();
    const QStringList parts = address.split(QLatin1Char(':'));
    QTEST(int(guard.judge({QHostAddress(sender), QHostAddress(parts.at(0)), parts.at(1).toUShort(),
                           requestSize, answerSize, 2},
                          0ms)),
          "verdict");
}

void TestPnPRequest::howOften_data()
{
    QTest::addColumn<int>("senders");
    QTest::addColumn<int>("addresses");
    QTest::addColumn<int>("firstSecond"); // datagrams in it
    QTest::addColumn<int>("tenSeconds");
    QTest::newRow("one host") << 1 << 1 << 218 << 398;
    QTest::newRow("one host that names others") << 1 << 200 << 218 << 398;
    QTest::newRow("many that name one") << 200 << 1 << 218 << 398;
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
        if (ask(request % senders, request % addresses, request * 1ms / 2))
            inSecond.at(size_t(request / 2000)) += 2;
    }
    QTEST(inSecond.front(), "firstSecond");
    QTEST(std::accumulate(inSecond.begin(), inSecond.end(), 0), "tenSeconds");

    // A second of quiet, and a hundred telephones boot at the same instant.
    for (int phone = 0; phone < 100; ++phone)
        QVERIFY(ask(70000 + phone, 70000 + phone, 11s));
}

QTEST_APPLESS_MAIN(TestPnPRequest)
#include "tst_pnprequest.moc"
