#include "TestDevices.h"
#include "import/DeviceHeader.h"
#include "import/csv_parser.h"
#include "model/ContactFields.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

Q_DECLARE_METATYPE(ImportFault)

namespace {

using Row = QList<QByteArray>;
using Rows = QList<Row>;

/// A stream over these bytes, which the caller closes.
std::FILE *streamOf(const QByteArray &content)
{
    std::FILE *const stream = std::tmpfile();
    if (stream)
        std::fwrite(content.constData(), 1, std::size_t(content.size()), stream);
    return stream;
}

/// Every row that the reader announces. Reads as the import does.
Rows rowsOf(csv_parser &reader)
{
    Rows rows;
    do {
        Row row;
        const csv_row fields = reader.next_row();
        for (const std::string &field : fields)
            row.append(QByteArray(field.data(), int(field.size())));
        rows.append(row);
    } while (reader.more_rows());
    return rows;
}

} // namespace

class TestCsvParser : public QObject
{
    Q_OBJECT

private slots:
    void splitsLines_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<Rows>("rows");

        const auto add = [](const char *name, const QByteArray &content, const Rows &rows) {
            QTest::newRow(name) << content << rows;
        };
        add("empty file", "", {{""}});
        add("only LF", "\n", {{"", ""}});
        add("CR stays", "a,b\r\n", {{"a", "b\r", ""}});
        add("final LF", "a,b\nc,d\n", {{"a", "b", ""}, {"c", "d", ""}});
        add("only separators", ",,", {{"", "", ""}});
        add("quoted comma", "a,\"b,c\",d\n", {{"a", "b,c", "d", ""}});
        add("doubled quotes", "\"say \"\"hi\"\" now\",x\n", {{"say \"hi\" now", "x", ""}});
        add("a quote before a comma", "\"a\"\",b\",c\n", {{"a\",b", "c", ""}});
        add("quoted nothing", "\"\",x\n", {{"", "x", ""}});
        add("two quoted quotes", "\"\"\"\"\"\",x\n", {{"\"\"", "x", ""}});
        add("a lone quote", "\"", {{"\""}});
        add("a quote that never closes", "a,\"b,c\n", {{"a", "\"b,c\n"}});
        add("a quote inside a field", "a\"b,c\nd,e\n", {{"a\"b,c\n"}, {"d", "e", ""}});
        add("a pair inside a bare field", "a\"\"b,c\n", {{"a\"b", "c", ""}});
        add("a NUL ends a piece", QByteArray("a\0b,c\n", 6), {{"a", "b", "c"}});
        add("bytes above 127", "\xff\xfe,\xe7\xbd\x91\n", {{"\xff\xfe", "\xe7\xbd\x91", ""}});
    }

    void splitsLines()
    {
        QFETCH(QByteArray, content);
        QFETCH(Rows, rows);

        csv_parser reader;
        QVERIFY(reader.open_stream(streamOf(content)));
        QVERIFY(reader.more_rows());
        QCOMPARE(reader.record_count(), 0U);
        QCOMPARE(rowsOf(reader), rows);
        QCOMPARE(reader.record_count(), unsigned(rows.size()));
    }

    void otherModes_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<char>("escape");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<Row>("row");

        const int none = csv_parser::enclosure_none;
        const int mandatory = csv_parser::enclosure_mandatory;
        QTest::newRow("none") << none << '\0' << QByteArray("a;'b;c'|") << Row{"a", "'b", "c'"};
        QTest::newRow("mandatory")
            << mandatory << '\0' << QByteArray("'a;b'x;'c'|") << Row{"a;b", "c"};
        QTest::newRow("mandatory, escaped")
            << mandatory << '\\' << QByteArray("'a\\'b';'c'|") << Row{"a\\'b", "c"};
        QTest::newRow("unknown") << 7 << '\0' << QByteArray("a,\"b,c\"|") << Row{"a", "\"b,c\"|"};
    }

    void otherModes()
    {
        QFETCH(int, mode);
        QFETCH(char, escape);
        QFETCH(QByteArray, content);
        QFETCH(Row, row);
        csv_parser reader;
        reader.set_skip_lines(1); // split at LF: the terminators are not known yet
        QVERIFY(reader.open_stream(streamOf("skipped\n" + content + "next")));
        reader.set_enclosure('\'', mode);
        reader.set_escape(escape);
        reader.set_field_term(';');
        reader.set_line_term('|');
        // The zero byte must not undo any of it.
        reader.set_enclosure('\0', csv_parser::enclosure_optional);
        reader.set_field_term('\0');
        reader.set_line_term('\0');
        const Rows rows = rowsOf(reader);
        QCOMPARE(rows.size(), 2);
        QCOMPARE(rows.first(), row);
    }

    /// A reader that moves the text up for every quote takes longer than the test may.
    void longLine()
    {
        const QByteArray quotes(2000000, '"');
        csv_parser reader;
        QVERIFY(reader.open_stream(streamOf('"' + quotes + quotes + "\",end\nnext,row")));
        // Not compared as a whole: a difference would print every byte.
        const Rows rows = rowsOf(reader);
        QCOMPARE(rows.size(), 2);
        QVERIFY(rows.first() == (Row{quotes, "end", ""}));
        QCOMPARE(rows.last(), (Row{"next", "row"}));
    }

    void opensFilesAndStreams()
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); // as the import does
        const QTemporaryDir folder;
        const QString path = folder.filePath("设备 list.csv"_s);
        csv_parser reader;
        for (const char *name : {static_cast<const char *>(nullptr), "", "no such file"})
            QVERIFY(!reader.open_file(name));
        QVERIFY(!reader.open_stream(nullptr));
        QVERIFY(!reader.more_rows());
        QCOMPARE(rowsOf(reader), Rows{{""}});
        writeFile(path, "a\nb\n");
        for (int i = 0; i < 2; ++i) { // opening once more starts from the beginning
            QVERIFY(reader.open_file(QFile::encodeName(path).constData()));
            QCOMPARE(reader.record_count(), 0U);
            QCOMPARE(rowsOf(reader), (Rows{{"a", ""}, {"b", ""}}));
        }
    }

    void tellsHeaders_data()
    {
        QTest::addColumn<QString>("titles");
        QTest::addColumn<int>("type");
        QTest::addColumn<ImportFault>("fault");
        using Fault = ImportFault;
        const auto add = [](const char *name, const char *titles, int type, Fault fault) {
            QTest::newRow(name) << QString::fromUtf8(titles) << type << fault;
        };
        QTest::newRow("English") << englishCsvHeader() << int(EnglishDeviceHeader) << Fault::None;
        QTest::newRow("Chinese") << chineseCsvHeader() << int(ChineseDeviceHeader) << Fault::None;
        add("only a port", "mac,random port", EnglishDeviceHeader, Fault::None);
        add("only a Chinese port", "随机端口,mac", ChineseDeviceHeader, Fault::None);
        add("a MAC and another", "MAC,IP,My Password", EnglishDeviceHeader, Fault::None);
        add("a MAC and a Chinese other", "mac,IP,密码", ChineseDeviceHeader, Fault::None);
        add("device wins", "Given Name,Categories,MAC,Dial Plan", EnglishDeviceHeader, Fault::None);
        add("no MAC", "Random Port,IP", EnglishDeviceHeader, Fault::NoMacColumn);
        add("neither MAC nor key", "IP,Password", PhonebookHeader, Fault::NoMacColumn);
        add("a MAC and no more", "MAC,My IP", PhonebookHeader, Fault::OtherTitles);
        add("nothing", "", PhonebookHeader, Fault::OtherTitles);
        add("a device", "02-00-a7-00-00-01,IP", PhonebookHeader, Fault::NoTitles);
        add("semicolons", "MAC;IP;City;Note, if any", PhonebookHeader, Fault::Semicolons);
        add("tabs", "MAC\tIP\tCity", PhonebookHeader, Fault::Tabs);
        add("phone book", "First Name,Last Name,Work Phone", PhonebookHeader, Fault::PhoneBook);
        add("phone book with a MAC", "First Name,MAC,IP", PhonebookHeader, Fault::PhoneBook);
        add("mail", "Given Name,MAC", MailHeader, Fault::PhoneBook);
        add("office", "Categories,MAC", OfficeHeader, Fault::PhoneBook);
        add("Chinese business", "业务电话,业务传真", ChineseBusinessHeader, Fault::PhoneBook);
    }

    void tellsHeaders()
    {
        QFETCH(QString, titles);
        const DeviceHeader header(titles.split(QLatin1Char(',')));
        QTEST(int(header.type()), "type");
        QTEST(header.fault(), "fault");
    }
};

QTEST_GUILESS_MAIN(TestCsvParser)
#include "tst_csvparser.moc"
