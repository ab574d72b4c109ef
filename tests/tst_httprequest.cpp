#include "net/HttpRequest.h"
#include "net/PrintableText.h"

#include <QTest>

#include <array>

class TestHttpRequest : public QObject
{
    Q_OBJECT

private slots:
    void parse_data();
    void parse();
    void unsafeNames();
};

namespace {
QString agent(const char *value)
{
    return QLatin1String("User-Agent: ") + QLatin1String(value) + QLatin1String("\r\n");
}
} // namespace

void TestHttpRequest::parse_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("product");
    QTest::addColumn<QString>("mac");
    QTest::addColumn<bool>("namesDocument");

    const QString get = QStringLiteral("GET /cfg0200a7aabbcc.xml HTTP/1.1\r\n");
    const QString name = QStringLiteral("cfg0200a7aabbcc.xml");
    const QString mac = QStringLiteral("0200a7aabbcc");
    const auto text = [](const char *s) { return QString::fromLatin1(s); };

    const auto add = [](const char *title, const QStringList &lines, const QString &fileName,
                        const char *product, const QString &macText, bool isDocument) {
        QTest::newRow(title) << lines << fileName << QString::fromLatin1(product) << macText
                             << isDocument;
    };
    const auto asked = [](const char *target) {
        return QStringLiteral("GET %1 HTTP/1.1\r\n").arg(QLatin1String(target));
    };
    const QString none;

    add("nothing", {}, none, "", none, false);
    add("no version", {text("GET /cfg0200a7aabbcc.xml\r\n")}, name, "", mac, true);
    add("folders before the name", {asked("/a/b/cfg0200a7aabbcc.xml")}, name, "", mac, true);
    add("upper-case name", {asked("/CFG0200a7aabbcc.xml")}, none, "", none, false);
    add("other method", {text("POST /cfg0200a7aabbcc.xml HTTP/1.1\r\n")}, none, "", none, false);
    add("upper-case XML", {asked("/cfg0a.XML")}, text("cfg0a.XML"), "", text("0a"), false);
    add("no dot", {asked("/cfgxml")}, text("cfgxml"), "", none, false);
    add("MAC up to the first dot", {asked("/cfg0a.b.xml")}, text("cfg0a.b.xml"), "", text("0a"),
        true);
    add("escapes are not undone", {asked("/cfg%2e%2f0a.xml")}, text("cfg%2e%2f0a.xml"), "",
        text("%2e%2f0a"), true);
    add("last request line counts", {asked("/cfg0a.xml"), get}, name, "", mac, true);

    add("query form", {asked("/cfg0200a7aabbcc.xml?pro=KTP")}, name, "KTP", none, false);
    add("query form, value too far left", {asked("/cfg0a.xml?pro=DK")}, text("cfg0a.xml"), "", none,
        false);
    add("query form keeps an earlier MAC", {get, asked("/other000000000.xml?pro=DK")},
        text("other000000000.xml"), "DK", mac, true);
    add("query form without a slash", {asked("x?pro=a")}, text("1.1"), "", none, false);

    add("KTP before DK", {get, agent("DK KTP 1.0")}, name, "KTP", mac, true);
    add("KTV before KTP", {get, agent("KTP KTV3275")}, name, "KTV3275", mac, true);
    add("order of the models", {get, agent("KTV3240 KTV3275 KTV3175 KTV3140")}, name, "KTV3140",
        mac, true);
    add("unknown agent keeps the product", {get, agent("DK715"), agent("curl/8")}, name, "DK", mac,
        true);
    add("case matters", {get, text("user-agent: DK\r\n"), agent("dk")}, name, "", mac, true);
    add("only the agent line names a product", {get, text("X-User-Agent: DK\r\n")}, name, "", mac,
        true);
    add("agent before the request line", {agent("DK715"), get}, name, "DK", mac, true);
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
