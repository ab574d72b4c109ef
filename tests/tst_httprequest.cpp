#include "net/HttpRequest.h"

#include <QTest>

class TestHttpRequest : public QObject
{
    Q_OBJECT

private slots:
    void parse_data();
    void parse();
    void safeNames_data();
    void safeNames();
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

    QTest::newRow("nothing") << QStringList() << QString() << QString() << QString() << false;
    QTest::newRow("plain") << QStringList{get} << name << QString() << mac << true;
    QTest::newRow("HTTP/1.0") << QStringList{text("GET /cfg0200a7aabbcc.xml HTTP/1.0\r\n")} << name
                              << QString() << mac << true;
    QTest::newRow("no version") << QStringList{text("GET /cfg0200a7aabbcc.xml\r\n")} << name
                                << QString() << mac << true;
    QTest::newRow("folders before the name")
        << QStringList{text("GET /a/b/cfg0200a7aabbcc.xml HTTP/1.1\r\n")} << name << QString()
        << mac << true;
    QTest::newRow("upper case name is another name")
        << QStringList{text("GET /CFG0200a7aabbcc.xml HTTP/1.1\r\n")} << QString() << QString()
        << QString() << false;
    QTest::newRow("other methods are ignored")
        << QStringList{text("POST /cfg0200a7aabbcc.xml HTTP/1.1\r\n")} << QString() << QString()
        << QString() << false;
    QTest::newRow("upper case XML") << QStringList{text("GET /cfg0a.XML HTTP/1.1\r\n")}
                                    << text("cfg0a.XML") << QString() << text("0a") << false;
    QTest::newRow("firmware") << QStringList{text("GET /ktv3240fw.bin HTTP/1.1\r\n")} << QString()
                              << QString() << QString() << false;
    QTest::newRow("no MAC") << QStringList{text("GET /cfg.xml HTTP/1.1\r\n")} << text("cfg.xml")
                            << QString() << QString() << false;
    QTest::newRow("no dot") << QStringList{text("GET /cfgxml HTTP/1.1\r\n")} << text("cfgxml")
                            << QString() << QString() << false;
    QTest::newRow("MAC ends at the first dot")
        << QStringList{text("GET /cfg0a.b.xml HTTP/1.1\r\n")} << text("cfg0a.b.xml") << QString()
        << text("0a") << true;
    QTest::newRow("escapes are not undone")
        << QStringList{text("GET /cfg%2e%2e%2f0a.xml HTTP/1.1\r\n")} << text("cfg%2e%2e%2f0a.xml")
        << QString() << text("%2e%2e%2f0a") << true;
    QTest::newRow("last request line counts")
        << QStringList{text("GET /cfg0a.xml HTTP/1.1\r\n"), get} << name << QString() << mac
        << true;

    QTest::newRow("query form") << QStringList{text(
                                       "GET /cfg0200a7aabbcc.xml?pro=KTP HTTP/1.1\r\n")}
                                << name << text("KTP") << QString() << false;
    QTest::newRow("query form, value too far left")
        << QStringList{text("GET /cfg0a.xml?pro=DK HTTP/1.1\r\n")} << text("cfg0a.xml") << QString()
        << QString() << false;
    QTest::newRow("query form keeps an earlier MAC")
        << QStringList{get, text("GET /other000000000.xml?pro=DK HTTP/1.1\r\n")}
        << text("other000000000.xml") << text("DK") << mac << true;
    QTest::newRow("query form without a slash before the mark")
        << QStringList{text("GET x?pro=a HTTP/1.1\r\n")} << text("1.1") << QString() << QString()
        << false;

    QTest::newRow("KTP") << QStringList{get, agent("Velloran KTP2140 1.0")} << name << text("KTP")
                         << mac << true;
    QTest::newRow("DK") << QStringList{get, agent("DK715")} << name << text("DK") << mac << true;
    QTest::newRow("KTP before DK")
        << QStringList{get, agent("DK KTP")} << name << text("KTP") << mac << true;
    QTest::newRow("KTV before KTP")
        << QStringList{get, agent("KTP KTV3275")} << name << text("KTV3275") << mac << true;
    QTest::newRow("order of the models")
        << QStringList{get, agent("KTV3240 KTV3275 KTV3175 KTV3140")} << name << text("KTV3140")
        << mac << true;
    QTest::newRow("KTV3240 last") << QStringList{get, agent("KTV3240 KTV3275")} << name
                                  << text("KTV3275") << mac << true;
    QTest::newRow("unknown agent")
        << QStringList{get, agent("curl/8")} << name << QString() << mac << true;
    QTest::newRow("unknown agent keeps the product")
        << QStringList{get, agent("DK715"), agent("curl/8")} << name << text("DK") << mac << true;
    QTest::newRow("agent's case matters")
        << QStringList{get, text("user-agent: DK\r\n"), agent("dk")} << name << QString() << mac
        << true;
    QTest::newRow("only the agent line names a product")
        << QStringList{get, text("X-User-Agent: DK\r\n"), text("Host: KTP\r\n")} << name
        << QString() << mac << true;
    QTest::newRow("agent before the request line")
        << QStringList{agent("DK715"), get} << name << text("DK") << mac << true;
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

void TestHttpRequest::safeNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("safe");
    QTest::newRow("usual") << QStringLiteral("cfg0200a7aabbcc.xml") << true;
    QTest::newRow("escaped dots") << QStringLiteral("cfg%2e%2e.xml") << true;
    QTest::newRow("slash") << QStringLiteral("cfg/x.xml") << false;
    QTest::newRow("backslash") << QStringLiteral("cfg\\x.xml") << false;
    QTest::newRow("two dots") << QStringLiteral("cfgx..xml") << false;
    QTest::newRow("NUL") << QString::fromLatin1("cfgx.xml\0.bin", 13) << false;
}

void TestHttpRequest::safeNames()
{
    QFETCH(QString, name);
    HttpRequest request;
    request.addLine(QLatin1String("GET /") + name + QLatin1String(" HTTP/1.1\r\n"));
    QCOMPARE(request.fileName, name);
    QTEST(request.hasSafeFileName(), "safe");
}

QTEST_GUILESS_MAIN(TestHttpRequest)
#include "tst_httprequest.moc"
