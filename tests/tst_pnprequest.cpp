#include "Literal.h"
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

/// A request as a phone sends it.
QByteArray sent()
{
    return pnpSubscribe("0200a7000001", "192.168.10.20:5062", "KTP2135");
}

const char standardCallId[] = "88200314-0200a7000001@phone";

QByteArray with(const QByteArray &from, const QByteArray &to)
{
    Q_ASSERT(sent().contains(from));
    return sent().replace(from, to);
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

constexpr int largestPayload = 65507; // of a UDP datagram

} // namespace

/// What plug and play decides and says, without a socket.
class TestPnPRequest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data()
    {
        QTest::addColumn<QByteArray>("datagram");
        QTest::addColumn<int>("stoppedAt");
        QTest::addColumn<QString>("fields"); // some of those that are read, each between bars

        const auto complete = [](const char *name, const QByteArray &datagram, const char *fields) {
            QTest::newRow(name) << datagram << int(PnPRequest::Complete)
                                << QString::fromLatin1(fields);
        };
        const auto stops = [](const char *name, const QByteArray &datagram, PnPRequest::Step step) {
            QTest::newRow(name) << datagram << int(step) << QString();
        };
        const QByteArray mac = "0200a7000001@224.0.1.75 SIP";
        const QByteArray model = "model=\"KTP2135\"";

        complete(
            "as phones send it", sent(),
            "|0200a7000001|192.168.10.20:5062|192.168.10.20|5062|branch=z9hG4bK770412|tag=5150|"
            "88200314-0200a7000001@phone|2001 SUBSCRIBE|ua-profile;profile-type=\"device\";"
            "vendor=\"phone\";model=\"KTP2135\";version=\"1.0\"|KTP2135|");
        complete("MAC as it is", with(mac, "00:zZ:*\xe9 <x>@ SIP"), "|00:zZ:*\xe9 <x>|");
        stops("MAC's line end", with(mac, "0200a7\r\n0001@ SIP"), PnPRequest::MacAddress);
        for (const char *address :
             {"192.168.10.20;", "192.168.10.20:65536;", "0.0.0.0:5062;", "phone.local:5062;",
              "224.0.1.75:5060;", "255.255.255.255:5062;", "192.168.10.20:5062\r\n;"})
            stops(address, with("192.168.10.20:5062;", address), PnPRequest::AddressAndPort);
        complete("the first of two",
                 with("From: ", "Via: SIP/2.0/UDP 10.0.0.9:9;branch=other\r\nFrom: "),
                 "|192.168.10.20:5062|192.168.10.20|5062|branch=z9hG4bK770412|");
        stops("bare line feeds", sent().replace("\r\n", "\n"), PnPRequest::Branch);
        const QByteArray longest(512, 'a');
        complete("longest Call-ID", with(standardCallId, longest), "|" + longest + "|");
        stops("longer Call-ID", with(standardCallId, longest + 'a'), PnPRequest::CallId);
        stops("LF in the CSeq", with("2001 ", "2001\n"), PnPRequest::Cseq);
        complete("an empty value", with("2001 SUBSCRIBE", ""), "@phone||ua-profile;");
        complete("largest datagram", QByteArray(largestPayload - sent().size(), 'x') + sent(),
                 "|KTP2135|");
        stops("no closing quote", with("\";version=\"1.0\"", ""), PnPRequest::Model);
        stops("model in the next line", with(model, "\r\nX: " + model), PnPRequest::Model);
        complete("empty model", with(model, "model=\"\""), "||");

        // Each mark is missing in turn, with all that come after it.
        QByteArray missing = sent();
        int step = PnPRequest::Model;
        for (const char *mark : {"model=", "Event: ", "CSeq: ", "Call-ID: ", "tag=", "branch=",
                                 "Via: SIP/2.0/UDP ", "@"})
            stops(mark, missing.replace(mark, "-"), PnPRequest::Step(step--));

        stops("NUL", with("5150", QByteArray(1, '\0')), PnPRequest::FromTag);
    }

    void reads()
    {
        QFETCH(QByteArray, datagram);
        QFETCH(QString, fields);
        const PnPRequest read = PnPRequest::parse(datagram);
        QTEST(int(read.stoppedAt), "stoppedAt");
        const QString all =
            QStringList({QString(), read.macAddress, read.addressAndPort, read.address,
                         QString::number(read.port), read.branch, read.fromTag, read.callId,
                         read.cseq, read.event, read.model, QString()})
                .join(QLatin1Char('|'));
        QVERIFY2(all.contains(fields), qPrintable(all));
    }

    void messages()
    {
        const QByteArray allow = "Allow: INVITE, ACK, OPTIONS, CANCEL, BYE, SUBSCRIBE, NOTIFY, "
                                 "INFO, REFER, UPDATE, MESSAGE\r\n";
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
            allow + "Content-Length:    25\r\n\r\nhttp://192.168.10.1:8080";

        // The datagram's bytes are Latin-1, the answers' UTF-8.
        const QString local = "192.168.10.1"_s;
        const QByteArray id = "\xe9";
        const PnPRequest request = PnPRequest::parse(with(standardCallId, id));
        const auto answer = [](QByteArray text) {
            return text.replace(standardCallId, "\xc3\xa9");
        };
        QCOMPARE(PnPMessages::notImplemented(request, local).toUtf8(), answer(notImplemented));
        QCOMPARE(PnPMessages::accepted(request).toUtf8(), answer(accepted));
        // What the folder of the file ends with.
        for (const auto &[model, slash] : {std::pair("ktp2200", "/"), std::pair("KTP2200 ", "/"),
                                           std::pair("KTP2200", ""), std::pair("MKTP2135", "")}) {
            const PnPRequest named = PnPRequest::parse(with("KTP2135", model));
            QCOMPARE(PnPMessages::notify(named, local, "http://192.168.10.1:8080"_s).toUtf8(),
                     QByteArray(notify).replace("   25", *slash ? "   25" : "   24") + slash);
        }
    }

    void whoIsAnswered()
    {
        const auto verdict = [](const char *sender, const char *address, quint16 port = 5062,
                                int requestSize = 500, int answerSize = 1050) {
            return guardOfTwoCards().judge({QHostAddress(QLatin1String(sender)),
                                            QHostAddress(QLatin1String(address)), port, requestSize,
                                            answerSize, 2},
                                           0ms);
        };
        const char phone[] = "192.168.10.20";
        const char far[] = "203.0.113.9";
        QCOMPARE(verdict(phone, phone), PnPGuard::Allowed);
        QCOMPARE(verdict(far, far, 5060), PnPGuard::Allowed);
        QCOMPARE(verdict(far, phone), PnPGuard::Allowed);
        QCOMPARE(verdict(phone, "10.1.2.3"), PnPGuard::Allowed); // on the other card's network
        QCOMPARE(verdict("127.0.0.1", "127.8.9.10"), PnPGuard::Allowed);
        for (const char *other :
             {far, "172.16.0.2",
              "127.0.0.1"}) // far away; on the tunnel's single-host network; loopback
            QCOMPARE(verdict(phone, other), PnPGuard::OtherNetwork);
        for (const char *self : {"192.168.10.1", "127.8.9.10"})
            QCOMPARE(verdict("127.0.0.1", self, 5060), PnPGuard::ComesBack);
        for (const char *everybody : {"192.168.10.255", "192.168.10.0"})
            QCOMPARE(verdict(phone, everybody), PnPGuard::ComesBack);
        QCOMPARE(verdict(phone, phone, 5062, 500, 1500), PnPGuard::Allowed); // three times as long
        QCOMPARE(verdict(phone, phone, 5062, 500, 1501), PnPGuard::TooLong);
        QCOMPARE(verdict(phone, phone, 5062, 180, 1100), PnPGuard::Allowed);
        QCOMPARE(verdict(phone, phone, 5062, 366, 1101), PnPGuard::TooLong);
    }

    void howOften_data()
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
    void howOften()
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
            // Among many, the phone that is named does not ask itself.
            const int sender = request % senders + (senders > addresses ? 1 : 0);
            if (ask(sender, request % addresses, request * 1ms / 2))
                inSecond.at(size_t(request / 2000)) += 2;
        }
        QTEST(inSecond.front(), "firstSecond");
        QTEST(std::accumulate(inSecond.begin(), inSecond.end(), 0), "tenSeconds");

        // A phone that is named that often can still ask for itself.
        if (senders > 1)
            QVERIFY(ask(0, 0, 10s));
        // A second of quiet, and a hundred phones boot at the same instant.
        for (int phone = 0; phone < 100; ++phone)
            QVERIFY(ask(70000 + phone, 70000 + phone, 11s));
    }
};

QTEST_APPLESS_MAIN(TestPnPRequest)
#include "tst_pnprequest.moc"
