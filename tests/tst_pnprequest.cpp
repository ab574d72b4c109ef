#include "PnPSubscribe.h"
#include "net/PnPMessages.h"
#include "net/PnPRequest.h"

#include <QHostAddress>
#include <QStringList>
#include <QTest>

#include <array>
#include <random>

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

const QString local = QStringLiteral("192.168.10.1");
const QString url = QStringLiteral("http://192.168.10.1:8080");

constexpr int largestPayload = 65507; // of a UDP datagram

} // namespace

class TestPnPRequest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void stopsAtTheFirstThatIsMissing();
    void messages();
    void folderOfTheFile();
    void anyDatagramIsSafe();
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
    noAddress("port beyond an int", "192.168.10.20:4294967301;");
    noAddress("port in hexadecimal", "192.168.10.20:0x13c6;");
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
    stops("cut in the branch", standard().left(standard().indexOf("770412")), PnPRequest::Branch);
    stops("Call-ID without a blank", standardWith("Call-ID: ", "Call-ID:"), PnPRequest::CallId);
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

namespace {

/// Makes datagrams out of a telephone's by what goes wrong on the way or is done on purpose.
class Mutator
{
public:
    explicit Mutator(quint32 seed)
        : m_random(seed)
    {
    }

    QByteArray next()
    {
        QByteArray datagram = standard();
        for (int changes = 1 + below(4); changes > 0; --changes)
            change(datagram);
        return datagram;
    }

private:
    int below(int bound) { return int(m_random() % quint32(bound)); }

    QByteArray token()
    {
        static const QList<QByteArray> tokens =
            QByteArray("@|:|;|\"|\r\n|\r|\n|::|Via: SIP/2.0/UDP |branch=|tag=|Call-ID: |CSeq: |"
                       "Event: |model=\"|KTP|99999999999|:0;|224.0.1.75:5060;|0.0.0.0|%s%n|"
                       "%1%2%3|\xed\xa0\x80")
                .split('|')
            << QByteArray(1, '\0');
        if (below(8) == 0)
            return QByteArray(1, char(below(256)));
        return tokens.at(below(tokens.size()));
    }

    void change(QByteArray &datagram)
    {
        const int at = below(datagram.size() + 1);
        const int kind = below(5);
        if (kind == 0)
            datagram.insert(at, token());
        else if (kind == 1)
            datagram.remove(at, below(40));
        else if (kind == 2)
            datagram.truncate(at);
        else if (kind == 3)
            datagram.insert(below(datagram.size() + 1), datagram.mid(at, below(200)));
        else
            datagram.replace(token(), token());
    }

    std::mt19937 m_random;
};

/// What is wrong with what was read from `datagram`; null when nothing is.
QString faultOf(const PnPRequest &request, const QByteArray &datagram)
{
    const QString text = QString::fromLatin1(datagram.constData()); // up to the first NUL
    const std::array<QString, 8> fields = {
        request.macAddress, request.addressAndPort, request.branch, request.fromTag,
        request.callId,     request.cseq,           request.event,  request.model};
    for (int step = 0; step < int(fields.size()); ++step) {
        const QString &field = fields.at(size_t(step));
        if (step >= request.stoppedAt && !field.isEmpty())
            return QStringLiteral("field %1 is set though the reading stopped").arg(step);
        if (!text.contains(field))
            return QStringLiteral("field %1 is not in the datagram").arg(step);
        // The MAC is 12 characters, whatever they are.
        if (step > PnPRequest::MacAddress && field.contains(QLatin1String("\r\n")))
            return QStringLiteral("field %1 has more than one line").arg(step);
    }
    if (request.stoppedAt > PnPRequest::MacAddress && request.macAddress.size() != 12)
        return QStringLiteral("MAC of another length");
    if (request.stoppedAt > PnPRequest::AddressAndPort) {
        const QHostAddress address(request.address);
        if (request.port == 0 || address.protocol() != QAbstractSocket::IPv4Protocol ||
            address.isMulticast() || address.isBroadcast() || address == QHostAddress::AnyIPv4)
            return QStringLiteral("an address that no single host has");
    }
    return QString();
}

/// Whether a message has this many lines before its body, which is as long as it says.
bool isSound(const QString &message, int lineCount)
{
    const QByteArray bytes = message.toUtf8();
    const int end = bytes.indexOf("\r\n\r\n");
    const int length = bytes.mid(bytes.lastIndexOf("Content-Length:", end) + 15, 7).toInt();
    return end > 0 && bytes.left(end).count("\r\n") == lineCount - 1 &&
           length == bytes.size() - end - 4;
}

} // namespace

void TestPnPRequest::anyDatagramIsSafe()
{
    constexpr quint32 seed = 20240611;
    constexpr int datagrams = 100000;
    Mutator mutator(seed);
    std::array<int, PnPRequest::Complete + 1> reached = {};
    for (int i = 0; i < datagrams; ++i) {
        const QByteArray datagram = mutator.next();
        const PnPRequest request = PnPRequest::parse(datagram);
        ++reached.at(request.stoppedAt);
        QString fault = faultOf(request, datagram);
        // A MAC with a line end in it is the one thing that can break an answer's lines, and the
        // telephone's own doing.
        if (request.isComplete() && !request.macAddress.contains(QLatin1String("\r\n"))) {
            const bool sound = isSound(PnPMessages::notImplemented(request, local), 11) &&
                               isSound(PnPMessages::accepted(request), 11) &&
                               isSound(PnPMessages::notify(request, local, url), 13);
            if (fault.isEmpty() && !sound)
                fault = QStringLiteral("an answer is not sound");
        }
        QVERIFY2(fault.isEmpty(),
                 qPrintable(QStringLiteral("%1 (seed %2, datagram %3): %4")
                                .arg(fault)
                                .arg(seed)
                                .arg(i)
                                .arg(QString::fromLatin1(datagram.toPercentEncoding()))));
    }
    QStringList counts;
    for (const int count : reached) {
        counts.append(QString::number(count));
        // The run is worth something only when it reaches each stop, and the messages, often.
        QVERIFY2(count > datagrams / 200, qPrintable(counts.join(QLatin1Char(' '))));
    }
    qInfo("seed %u, stopped at each step: %s", seed, qPrintable(counts.join(QLatin1Char(' '))));
}

QTEST_APPLESS_MAIN(TestPnPRequest)
#include "tst_pnprequest.moc"
