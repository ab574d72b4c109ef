#include "Literal.h"
#include "net/HttpRequest.h"
#include "net/PrintableText.h"

#include <QTest>

#include <array>

class TestHttpRequest : public QObject
{
    Q_OBJECT

private slots:
    void parse_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QString>("mac"); // whose document is asked for
        const auto row = [](const char *lines, const char *fileName, const char *product,
                            const char *mac) {
            QTest::newRow(lines) << QString::fromLatin1(fileName) << QString::fromLatin1(product)
                                 << QString::fromLatin1(mac);
        };
        const char name[] = "cfg0a.xml";
        row("", "", "", "");
        row("GET /a/b/cfg0a.xml HTTP/1.1", name, "", "0a");
        row("GET /CFG0a.xml HTTP/1.1", "", "", "");
        row("POST /cfg0a.xml HTTP/1.1", "", "", "");
        row("GET /cfg0a.XML HTTP/1.1", "cfg0a.XML", "", "");
        row("GET /cfgxml HTTP/1.1", "cfgxml", "", "");
        row("GET /cfg0a.b.xml HTTP/1.1", "cfg0a.b.xml", "", "0a");
        row("GET /cfg%2e%2f0a.xml HTTP/1.1", "cfg%2e%2f0a.xml", "", "%2e%2f0a");
        row("GET /cfg0b.xml|GET /cfg0a.xml", name, "", "0a");

        row("GET /cfg0200a7aabbcc.xml?pro=KTP HTTP/1.1", "cfg0200a7aabbcc.xml", "KTP", "");
        row("GET /cfg0a.xml?pro=DK HTTP/1.1", name, "",
            ""); // the product is only looked for further right
        row("GET /cfg0a.xml|GET /other000000000.xml?pro=DK HTTP/1.1", "other000000000.xml", "DK",
            "0a");
        row("GET x?pro=a HTTP/1.1", "1.1", "", "");

        row("GET /cfg0a.xml|User-Agent: DK KTP 1.0", name, "KTP", "0a");
        row("GET /cfg0a.xml|User-Agent: KTV3240 KTV3275 KTV3175 KTV3140", name, "KTV3140", "0a");
        row("GET /cfg0a.xml|User-Agent: DK715|User-Agent: curl/8", name, "DK", "0a");
        row("GET /cfg0a.xml|user-agent: DK|User-Agent: dk|X-User-Agent: DK", name, "", "0a");
        row("User-Agent: DK715|GET /cfg0a.xml", name, "DK", "0a");
    }

    void parse()
    {
        HttpRequest request;
        const QStringList lines = QString::fromLatin1(QTest::currentDataTag()).split("|"_s);
        for (const QString &line : lines)
            request.addLine(line + "\r\n"_s);
        QTEST(request.fileName, "fileName");
        QTEST(request.product, "product");
        QTEST(request.namesDocument() ? request.mac : QString(), "mac");
    }

    void unsafeNames()
    {
        HttpRequest request;
        request.fileName = "cfg0a.xml.x y"_s;
        QVERIFY(request.hasSafeFileName());
        for (const char *end :
             {"/", "\\", "..a", ":a", "*", "?", "\"", "<", ">", "|", "\x1f", "\n", ".", " "}) {
            request.fileName = "cfg0a.xml"_s + QString::fromLatin1(end);
            QVERIFY2(!request.hasSafeFileName(), end);
        }
        // A name must not forge lines of the report, nor reverse their direction.
        const std::array<ushort, 9> sent = {'\r',   '\n', 0x85, 0x2028, 0x202e,
                                            0x2066, 'a',  ' ',  0x4e2d};
        QCOMPARE(printableText(QString::fromUtf16(sent.data(), 9)),
                 QString(6, QChar::ReplacementCharacter) + "a \u4e2d"_s);
    }
};

QTEST_GUILESS_MAIN(TestHttpRequest)
#include "tst_httprequest.moc"
