#include "net/HttpRequest.h"
#include "net/PrintableText.h"

#include <QTest>

#include <array>
#include <vector>

class TestHttpRequest : public QObject
{
    Q_OBJECT

private slots:
    void parse_data();
    void parse();
    void unsafeNames();
};

void TestHttpRequest::parse_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("product");
    QTest::addColumn<QString>("mac");
    QTest::addColumn<bool>("namesDocument");

    const auto add = [](const char *title, const std::vector<const char *> &lines,
                        const char *fileName, const char *product, const char *mac,
                        bool namesDocument) {
        QStringList texts;
        for (const char *line : lines)
            texts.append(QString::fromLatin1(line) + QLatin1String("\r\n"));
        QTest::newRow(title) << texts << QString::fromLatin1(fileName)
                             << QString::fromLatin1(product) << QString::fromLatin1(mac)
                             << namesDocument;
    };
    const char get[] = "GET /cfg0a.xml HTTP/1.1";
    const char name[] = "cfg0a.xml";
    const char mac[] = "0a";

    add("nothing", {}, "", "", "", false);
    add("no version", {"GET /cfg0a.xml"}, name, "", mac, true);
    add("folders before the name", {"GET /a/b/cfg0a.xml HTTP/1.1"}, name, "", mac, true);
    add("upper-case name", {"GET /CFG0a.xml HTTP/1.1"}, "", "", "", false);
    add("other method", {"POST /cfg0a.xml HTTP/1.1"}, "", "", "", false);
    add("upper-case XML", {"GET /cfg0a.XML HTTP/1.1"}, "cfg0a.XML", "", mac, false);
    add("no dot", {"GET /cfgxml HTTP/1.1"}, "cfgxml", "", "", false);
    add("MAC up to the first dot", {"GET /cfg0a.b.xml HTTP/1.1"}, "cfg0a.b.xml", "", mac, true);
    add("escapes are not undone", {"GET /cfg%2e%2f0a.xml HTTP/1.1"}, "cfg%2e%2f0a.xml", "",
        "%2e%2f0a", true);
    add("last request line counts", {"GET /cfg0b.xml HTTP/1.1", get}, name, "", mac, true);

    add("query form", {"GET /cfg0200a7aabbcc.xml?pro=KTP HTTP/1.1"}, "cfg0200a7aabbcc.xml", "KTP",
        "", false);
    add("query form, value too far left", {"GET /cfg0a.xml?pro=DK HTTP/1.1"}, name, "", "", false);
    add("query form keeps an earlier MAC", {get, "GET /other000000000.xml?pro=DK HTTP/1.1"},
        "other000000000.xml", "DK", mac, true);
    add("query form without a slash", {"GET x?pro=a HTTP/1.1"}, "1.1", "", "", false);

    add("KTP before DK", {get, "User-Agent: DK KTP 1.0"}, name, "KTP", mac, true);
    add("KTV before KTP", {get, "User-Agent: KTP KTV3275"}, name, "KTV3275", mac, true);
    add("order of the models", {get, "User-Agent: KTV3240 KTV3275 KTV3175 KTV3140"}, name,
        "KTV3140", mac, true);
    add("unknown agent keeps the product", {get, "User-Agent: DK715", "User-Agent: curl/8"}, name,
        "DK", mac, true);
    add("case matters", {get, "user-agent: DK", "User-Agent: dk"}, name, "", mac, true);
    add("only the agent line names a product", {get, "X-User-Agent: DK"}, name, "", mac, true);
    add("agent before the request line", {"User-Agent: DK715", get}, name, "DK", mac, true);
}

void TestHttpRequest::parse()
{
    QFETCH(QStringList, lines);
    HttpRequest request;
    for (const QString &line : qAsConst(lines))
        request.addLine(line);
    QTEST(request.fileName, "fileName");
    QTEST(request.product, "product");
    QTEST(request.mac, "mac");
    QTEST(request.namesDocument(), "namesDocument");
}

void TestHttpRequest::unsafeNames()
{
    HttpRequest request;
    request.fileName = QStringLiteral("cfg0a.xml.x y");
    QVERIFY(request.hasSafeFileName());
    for (const char *end :
         {"/", "\\", "..a", ":a", "*", "?", "\"", "<", ">", "|", "\x1f", "\n", ".", " "}) {
        request.fileName = QStringLiteral("cfg0a.xml") + QString::fromLatin1(end);
        QVERIFY2(!request.hasSafeFileName(), end);
    }
    // Nor may a name forge lines of the report, or turn them round.
    const std::array<ushort, 9> sent = {'\r', '\n', 0x85, 0x2028, 0x202e, 0x2066, 'a', ' ', 0x4e2d};
    QCOMPARE(printableText(QString::fromUtf16(sent.data(), 9)),
             QString(6, QChar::ReplacementCharacter) + QStringLiteral("a \u4e2d"));
}

QTEST_GUILESS_MAIN(TestHttpRequest)
#include "tst_httprequest.moc"
