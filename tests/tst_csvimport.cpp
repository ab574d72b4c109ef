#include "DataSide.h"
#include "import/ParseBase.h"
#include "import/ParseFactory.h"
#include "model/ExportType.h"
#include "model/ImportTarget.h"
#include "storage/ImportLook.h"

#include <QLocale>
#include <QTextCodec>
#include <QtTest>

#include <memory>

namespace {

const QString yesToAll = "Yes to All"_s;
const QString noToAll = "No to All"_s;

/// An import into this folder that remembers what it asks for.
class Import : public ImportTarget
{
public:
    explicit Import(const QString &folder)
        : parser(ParseFactory().createParser(*this, folder + QLatin1Char('/')))
    {
    }
    bool clearOld() override { return ++clears > 0; }
    void addContacts(const QList<ContactInfo> &contacts) override { added += contacts; }

    bool read(const QString &path, const QString &encoding = {})
    {
        return parser->import(path, encoding.isEmpty() ? parser->encodingOf(path) : encoding);
    }

    std::unique_ptr<ParseBase> parser;
    int clears = 0;
    QList<ContactInfo> added;
};

} // namespace

class TestCsvImport : public QObject, protected DataSide
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void tellsEncodings()
    {
        QLocale::setDefault(QLocale("zh_CN"_s));
        Import import(folder());
        // ASCII; a character that the end of the file cuts off; one that the end of a block does
        // not.
        QCOMPARE(import.parser->encodingOf(source("ASCII\n")), "UTF-8"_s);
        QCOMPARE(import.parser->encodingOf(source("MAC\n\xe7\xbd")), "GBK"_s);
        QCOMPARE(import.parser->encodingOf(source(QByteArray(65535, 'x') + "\xe7\xbd\x91")),
                 "UTF-8"_s);
        QLocale::setDefault(QLocale("de_DE"_s));
        QCOMPARE(import.parser->legacyEncodingName(), "EUC-KR"_s);
    }

    void readsEveryEncoding_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("hasChineseTitles");
        const auto row = [](const char *locale, const char *codec, const QString &text,
                            bool chinese) {
            QTest::newRow(locale) << QString::fromLatin1(locale) << QByteArray(codec) << text
                                  << chinese;
        };
        row("de_DE", "UTF-8", "网络 Größe 네트워크"_s, true);
        row("zh_CN", "GBK", "网络部门"_s, true);
        row("zh_TW", "Big5", "網路部門"_s, false);
        row("zh_HK", "Big5-HKSCS", "深水埗啲網路"_s, false);
        row("ja_JP", "Shift-JIS", "東京ネットワーク表ｶﾅ"_s, false);
        row("ko_KR", "EUC-KR", "네트워크"_s, false);
        row("ru_RU", "KOI8-R", "Отдел связи"_s, false);
    }

    void readsEveryEncoding()
    {
        QFETCH(QString, locale);
        QFETCH(QByteArray, codec);
        QFETCH(QString, text);
        QFETCH(bool, hasChineseTitles);
        QLocale::setDefault(QLocale(locale));
        QList<ContactInfo> devices = stampedDevices("a b");
        devices[0].username = devices[0].city = devices[1].company = text;
        devices[1].city = text + text;
        QStringList files = {csvText(englishCsvHeader(), devices)};
        if (hasChineseTitles)
            files.append(csvText(chineseCsvHeader(), devices, "\r\n"_s));
        if (codec == "UTF-8")
            files.append(QChar(QChar::ByteOrderMark) + files.first());
        for (const QString &file : qAsConst(files)) {
            QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
            Import import(folder());
            const QString path = source(QTextCodec::codecForName(codec)->fromUnicode(
                file.constData(), file.size(), &state));
            QCOMPARE(outlook({}, path).encoding, QString::fromLatin1(codec));
            QVERIFY(import.read(path));
            QCOMPARE(import.clears, 1);
            QVERIFY(import.added == devices);
        }
    }

    void refusesTextThatDoesNotFit_data()
    {
        QTest::addColumn<QString>("encoding");
        QTest::addColumn<QByteArray>("mark");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("fault");

        using Fault = ImportFault;
        const auto add = [](const char *name, const char *encoding, const QByteArray &text,
                            Fault fault = Fault::OtherEncoding, const QByteArray &mark = {}) {
            QTest::newRow(name) << QString::fromLatin1(encoding) << mark << text << int(fault);
        };
        const QByteArray utf8Mark = "\xef\xbb\xbf";
        const QByteArray utf16Mark = "\xff\xfe";
        add("not Korean", "EUC-KR", "\xff");
        add("no GBK", "GBK", "\xff\xff");
        add("a private character of GBK", "GBK", "\xaa\xa1");
        add("a private character of Japan", "Shift-JIS", "\xf0\x40");
        add("a private character of Hong Kong", "Big5-HKSCS", "\x81\x40");
        add("a control of the upper half", "Big5", "\x80");
        add("UTF-16", "GBK", QByteArray("\xff\xfeM\0A\0C\0", 8));
        add("a block of zero bytes", "UTF-8", QByteArray("b,\0\0,c", 6), Fault::NotText);
        add("a zero byte in the title row", "", "", Fault::NotText, QByteArray("M\0A\0", 4));
        add("cut off in GBK", "GBK", "\xd6");
        add("not UTF-8", "UTF-8", "\xd6\xd0");
        add("cut off in UTF-8", "UTF-8", "\xe7\xbd");
        add("marked, not UTF-8", "", "\xd6\xd0", Fault::DamagedUnicode, utf8Mark);
        add("marked, cut off", "", "\xe7\xbd", Fault::DamagedUnicode, utf8Mark);
        add("marked as UTF-16", "", "\xd6\xd0\xff", Fault::DamagedUnicode, utf16Mark);
        add("an unknown codec", "no such codec", "a");
    }

    /// Replacement characters in place of names would be a loss that nobody is told of.
    void refusesTextThatDoesNotFit()
    {
        QFETCH(QString, encoding);
        QFETCH(QByteArray, mark);
        QFETCH(QByteArray, text);
        QLocale::setDefault(QLocale("ru_RU"_s)); // KOI8-R fits any bytes
        Import import(folder());
        const QString path = source(mark + backupText(stampedDevices("a")) + text);
        QVERIFY(!import.read(path, encoding));
        QTEST(int(import.parser->fault()), "fault");
        QVERIFY(!importFaultText(import.parser->fault()).isEmpty());
        QCOMPARE(import.clears, 0);
        QVERIFY(import.added.isEmpty());
    }

    void fieldsArriveAsTheyStand()
    {
        ContactInfo expected;
        expected.mac = "02:00:a7:00:00:01"_s;
        expected.first_account = "0007"_s;
        expected.company = " Two  inner  blanks "_s;
        expected.password = "a,\"b\",c"_s;
        expected.username = "\""_s;
        expected.city = "ab"_s;
        expected.department = QString(50000, QLatin1Char('x'));
        Import import(folder());
        // Titles in another order, case and spacing, one quoted, one unknown, most missing.
        QVERIFY(import.read(source("  random   PORT ,\"Company\",My IP,PASSWORD,username,City,"
                                   "Primary account,department,mac\r\n"
                                   ", Two  inner  blanks ,note,\"a,\"\"b\"\",c\",\"\"\"\","
                                   "a\rb,0007," +
                                   QByteArray(50000, 'x') +
                                   ",0200a7000001\r\n\r\n , ,\r\n"
                                   ",,,,,,,,short\r\n"
                                   ",,,,,,,,\"open\r\n"
                                   "\x1a")));
        QCOMPARE(import.added.size(), 3);
        for (const ContactField &field : contactFields())
            QCOMPARE(import.added.first().*field.member, expected.*field.member);
        QVERIFY(import.added.at(1) == deviceWithMac("short"_s));
        // The quote that was never closed has not swallowed the line end.
        QVERIFY(import.added.last() == deviceWithMac("\"open"_s));
    }

    void columnsAndLines_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("devices");
        const auto row = [](const char *name, const QByteArray &content,
                            const QString &devices = "a 1|b 2"_s) {
            QTest::newRow(name) << content << devices;
        };
        // Taken for blanks, these line ends would make one title row of the list: an empty import.
        row("CR", "MAC,Random Port\ra,1\rb,2\r");
        row("CR, and LF once", "MAC,Random Port\ra,1\n\rb,2");
        row("CR CR LF", "MAC,\"Random Port\"\r\r\na,\"1\"\r\r\nb,2\r\r\n");
        row("LF, CR within", "MAC,Random Port\na\r,1\nb,\r2\r");
        row("a zero byte", QByteArray("MAC,Random Port\na,\0001\nb,2\n", 25));
        // As spreadsheets write it: tabs between the columns, quotes where a field has a comma.
        const QString tabs = QChar(QChar::ByteOrderMark) +
                             "Random Port\tMAC\tCity\r\n"
                             "\"a, b\"\t1\tc\"d\r\n\"say \"\"网络\"\"\"\t2\te, f\r\n"_s;
        for (const char *codec : {"UTF-16LE", "UTF-16BE"})
            row(codec, QTextCodec::codecForName(codec)->fromUnicode(tabs),
                "1 a, bc\"d|2 say \"网络\"e, f"_s);
        // The text is read in pieces of 256 KiB, whose end may be in the middle of anything.
        for (int length = 262100; length < 262150; ++length) {
            const QByteArray field = QByteArray(length, 'x') + "网";
            row(QByteArray::number(length), "MAC,Random Port\r\na,\"" + field + "\"\r\nb,2\r\n",
                "a %1|b 2"_s.arg(QString::fromUtf8(field)));
        }
    }

    void columnsAndLines()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, devices);
        Import import(folder());
        QVERIFY(import.read(source(content)));
        QStringList read;
        for (const ContactInfo &device : qAsConst(import.added))
            read.append(device.mac + QLatin1Char(' ') + device.random_port + device.city);
        QVERIFY2(read.join(QLatin1Char('|')) == devices,
                 qPrintable(read.join(QLatin1Char('|')).left(200)));
    }

    void workFilesArePrivate()
    {
        const QByteArray left = "MAC,Random Port\n\xec,b\n";
        const QByteArray converted = "MAC,Random Port\n\xd0\x9b,b\n";
        const QList<QPair<QString, QByteArray>> files = {
            {at("tmp.csv"_s), left}, {at("tmp1.csv"_s), converted}, {at("tmp2.csv"_s), converted}};
        for (const auto &file : files)
            writeFile(file.first, "left by another import");
        const QString path = source(left);
        QVERIFY(
            QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        Import import(folder());
        QVERIFY(import.read(path, "KOI8-R"_s));
        for (const auto &file : files) {
            QCOMPARE(fileContent(file.first), file.second);
            QCOMPARE(filePermissions(file.first), QFile::ReadOwner | QFile::WriteOwner);
        }
        // A work file that the user chooses must not be gone before it is read.
        QVERIFY(!import.read(files.at(1).first, "UTF-8"_s));
        QCOMPARE(int(import.parser->fault()), int(ImportFault::OwnWorkFile));
        QVERIFY(QFile::exists(files.at(1).first));
        import.parser->removeWorkFiles();
        QVERIFY(!import.read(at("no such file"_s), "UTF-8"_s));
        QCOMPARE(int(import.parser->fault()), int(ImportFault::Unreadable));
        for (const auto &file : files)
            QVERIFY(!QFile::exists(file.first));
        QVERIFY(QFile::exists(path));
    }

    void exportsTheseBytes_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QByteArray>("rowEnd");

        QTest::newRow("English")
            << int(CsvEnglish)
            << QByteArray(
                   "MAC,Product Model,Primary Account,SIP Server,SIP User ID,Authentication ID,"
                   "Password,Speech Coding1,Speech Coding2,Username,language,Random Port,"
                   "Keep-Alive,IP,Subnet,Gateway IP,DNS Server 1,DNS Server 2,"
                   "Enterprise Directory Path,Dial Plan,City,Company,Department,"
                   "Proxy Server\r\n")
            << QByteArray("\n");
        QTest::newRow("Chinese")
            << int(CsvChinese)
            << QByteArray("MAC,设备型号,分机号,SIP服务器,用户ID,鉴权ID,密码,语言编码1,语言编码2,"
                          "用户名,语言,随机端口,Keep-Alive,IP,子网,网关IP,DNS服务器1,DNS服务器2,"
                          "通讯录路径,拨号规则,城市,公司,部门,代理服务器\r\n")
            << QByteArray("\r\n");
    }

    void exportsTheseBytes()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, header);
        QFETCH(QByteArray, rowEnd);
        const QString path = at("x.csv.csv"_s);
        Run run(folder());
        const auto exported = [&](const QString &codec) {
            return run.mgr.exportDevices(type, codec, "x.csv"_s, folder());
        };
        QVERIFY(exported("UTF-8"_s));
        QCOMPARE(fileContent(path), header);

        QVERIFY(run.mgr.openDatabase());
        ContactInfo device = stampedDevice("d"_s);
        device.company = " 网络, \"AG\" "_s;
        run.mgr.addContacts({device, deviceWithMac("e"_s)});
        QVERIFY(exported("UTF-8"_s));
        const QByteArray rows =
            "d.mac,d.product,d.first_account,d.sip_server,d.sip_user_id,d.auth_id,d.password,"
            "d.speech_coding1,d.speech_coding2,d.username,d.language,d.random_port,d.keep_alive,d."
            "ip,"
            "d.subnet,d.gateway_ip,d.dns_server1,d.dns_server2,d.phonebook_path,d.dial_plan,d.city,"
            " 网络, \"AG\" ,d.department,d.proxy_server" +
            rowEnd + 'e' + QByteArray(23, ',') + rowEnd;
        QCOMPARE(fileContent(path), header + rows);

        QVERIFY(!exported("no such codec"_s));
        QCOMPARE(fileContent(path), header + rows);
        QVERIFY(exported("GBK"_s));
        QCOMPARE(fileContent(path),
                 QTextCodec::codecForName("GBK")->fromUnicode(QString::fromUtf8(header + rows)));
    }

    void flagSaysWhetherTheListIsReplaced_data() { addRows({"replace", "never loaded", "add"}); }

    void flagSaysWhetherTheListIsReplaced()
    {
        QFETCH(QByteArray, row);
        const bool flag = row != "add";
        const QList<ContactInfo> oldDevices = stampedDevices("a b");
        store(oldDevices);
        Run run(folder(), "");
        if (row != "never loaded")
            QVERIFY(run.load());
        writeFile(at("HTTPD/MACCFG/cfga"_s));
        QList<ContactInfo> devices = stampedDevices("c d e");
        run.mgr.setImportFlag(flag);
        QVERIFY(run.import(source(backupText(devices))));
        if (!flag)
            devices = oldDevices + devices;
        QCOMPARE(run.contacts(), numbered(devices));
        QCOMPARE(state(run), flag ? "c d e"_s : "a b c d e"_s);
        QCOMPARE(QFile::exists(at("HTTPD"_s)), !flag);
        QCOMPARE(backups().size(), flag ? 1 : 0);
        if (flag)
            QCOMPARE(backup(backups().constFirst()), backupText(oldDevices));
        // An exported empty list is a valid list.
        QVERIFY(run.import(source(englishCsvHeader().toUtf8())));
        QCOMPARE(state(run), flag ? QString() : "a b c d e"_s);
    }

    void failedImportChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QString list = csvText(chineseCsvHeader(), stampedDevices("x"));
        QTest::newRow("missing file") << QByteArray();
        QTest::newRow("empty file") << QByteArray("");
        QTest::newRow("binary file")
            << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) + QByteArray(5000, '\0');
        QTest::newRow("wrong encoding") << QTextCodec::codecForName("Shift-JIS")->fromUnicode(list);
        QTest::newRow("without a MAC") << QByteArray("Random Port,Gateway IP,Dial Plan\nx,y,z\n");
        QTest::newRow("no header") << list.section(QLatin1Char('\n'), 1).toUtf8();
    }

    void failedImportChangesNothing()
    {
        QFETCH(QByteArray, content);
        Run run(folder(), "a b");
        const QList<ContactInfo> before = run.contacts();
        const QByteArray database = fileContent(databasePath());
        const QString path = content.isNull() ? at("source.csv"_s) : source(content);
        for (const bool flag : {false, true}) {
            run.mgr.setImportFlag(flag);
            const ImportOutlook ahead = outlook(run.mgr.devices(), path);
            QVERIFY(ahead.state == ImportOutlook::State::Refused);
            QVERIFY(!run.import(path));
            QCOMPARE(ahead.reason, run.lastReason);
            QCOMPARE(run.contacts(), before);
            QCOMPARE(fileContent(databasePath()), database);
            QVERIFY(run.changes.isEmpty() && backups().isEmpty() && m_user->boxes.isEmpty());
        }
    }

    void duplicatesOfAnImport_data()
    {
        QTest::addColumn<QByteArray>("imported");
        QTest::addColumn<QStringList>("answers");
        QTest::addColumn<QString>("replaced");
        QTest::addColumn<int>("asked");
        QTest::addColumn<bool>("isOfMany");
        const auto row = [](const char *name, const char *imported, const QStringList &answers,
                            const QString &replaced, int asked, bool isOfMany) {
            QTest::newRow(name) << QByteArray(imported) << answers << replaced << asked << isOfMany;
        };
        row("one, Yes", "x b", {yes}, "b"_s, 1, false);
        row("one, No", "x b", {no}, {}, 1, false);
        row("many, Yes", "a x b c y", {yes}, "abc"_s, 3, true);
        row("many, Yes to All", "a x b c y", {yesToAll}, "abc"_s, 1, true);
        row("many, No, then Yes to All", "a x b c y", {no, yesToAll}, "bc"_s, 2, true);
        row("many, Yes, then No to All", "a x b c y", {yes, noToAll}, "a"_s, 2, true);
        row("one twice in the file", "x x", {no}, {}, 1, false);
        row("one thrice in the file", "x x x", {noToAll}, {}, 1, true);
    }

    void duplicatesOfAnImport()
    {
        QFETCH(QByteArray, imported);
        QFETCH(QStringList, answers);
        QFETCH(QString, replaced);
        QFETCH(bool, isOfMany);
        const int repeated = imported.count('x') - 1;
        const int added = imported.contains('y') ? 2 : 1;
        Run run(folder(), "a b c");
        QList<ContactInfo> newDevices = stampedDevices(imported.constData());
        for (ContactInfo &device : newDevices)
            device.company = "new"_s;
        m_user->answers = answers;
        const QString path = source(backupText(newDevices));
        const ImportOutlook ahead = outlook(run.mgr.devices(), path);
        QVERIFY(run.import(path));

        QCOMPARE(run.mgr.devices().size(), 3 + added);
        QCOMPARE(ahead.rows, newDevices.size());
        QCOMPARE(ahead.listed, 3);
        QCOMPARE(ahead.added, added);
        QCOMPARE(ahead.repeated, repeated);
        QCOMPARE(ahead.replacing, ahead.rows - added - repeated);
        QCOMPARE(ahead.missing, 3 - ahead.replacing);
        const QList<ContactInfo> devices = run.contacts();
        for (int row = 0; row < 3; ++row) {
            const QString stamp = "abc"_s.mid(row, 1);
            QCOMPARE(devices.at(row).mac, stamp + QLatin1String(".mac"));
            QCOMPARE(devices.at(row).company == QLatin1String("new"), replaced.contains(stamp));
        }
        QCOMPARE(run.changes.size(), 1);
        QTEST(m_user->boxes.size(), "asked");
        const SeenBox &box = m_user->boxes.first();
        QCOMPARE(box.buttons,
                 isOfMany ? QSet<QString>({yes, no, yesToAll, noToAll}) : QSet<QString>({yes, no}));
        const char first = imported.contains('a') ? 'a' : imported.back();
        QCOMPARE(box.text, "MAC:%1.mac has already exist,do you want to replace it?"_s.arg(
                               QLatin1Char(first)));
    }

    void lookingDisturbsNoImportAndLeavesNothing()
    {
        Run run(folder(), "");
        QByteArray list = "MAC,Random Port\n";
        for (int i = 0; i < 30000; ++i)
            list += "02:00:A7:" + QByteArray::number(i) + ",1\n";
        const QString path = source(list);
        {
            ImportLook look(run.mgr.devices(), folder() + QLatin1Char('/'));
            look.look(path);
            QVERIFY(run.import(path));
            QCOMPARE(run.mgr.devices().size(), 30000);
            QTRY_VERIFY(look.outlook().state == ImportOutlook::State::Ready);
            QCOMPARE(look.outlook().added, 30000);
            look.look(path);
            QVERIFY(!looksLeft().isEmpty());
            look.stop();
            QCOMPARE(looksLeft(), QStringList());
            look.look(path);
        }
        QCOMPARE(looksLeft(), QStringList());
        QVERIFY(outlook(run.mgr.devices(), writeFile(at("tmp.csv"_s), list)).state ==
                ImportOutlook::State::Refused);
    }

    void unusableStore_data() { addRows({"damaged", "cannot be put aside", "cannot be replaced"}); }

    /// What is left of a damaged file may be all that there is of the list.
    void unusableStore()
    {
        QFETCH(QByteArray, row);
        const bool isFolder = row == "cannot be replaced";
        const QByteArray damaged = "This is no database at all.";
        if (isFolder)
            QVERIFY(QDir(folder()).mkpath("phonebook.db/something"_s));
        else
            writeFile(databasePath(), damaged);
        if (row != "damaged")
            blockBackups();
        const QString path = source("MAC,Random Port\nc,1\n");
        Run run(folder());
        QVERIFY(!run.mgr.openDatabase());
        run.insert("a");
        m_user->boxes.clear();
        run.mgr.setImportFlag(true);
        QVERIFY(!run.import(at("no such file"_s)));
        if (row != "damaged") {
            m_user->answers = QStringList{no};
            QVERIFY(!run.import(path));
            QCOMPARE(m_user->takeTitles(), QStringList{"Backup Error"_s});
            QVERIFY(!run.mgr.isStoreUsable());
        }
        QCOMPARE(fileContent(databasePath()), isFolder ? QByteArray() : damaged);
        m_user->answers = QStringList{yes};
        QCOMPARE(run.import(path), !isFolder);
        m_user->boxes.clear();
        QCOMPARE(run.stamps(), isFolder ? "a"_s : "c"_s);
        if (!isFolder)
            QCOMPARE(state(run), "c"_s);
        const QStringList names = backups("phonebook-*.db"_s);
        QCOMPARE(names.size(), row == "damaged" ? 1 : 0);
        QCOMPARE(names.isEmpty() ? damaged : backup(names.first()), damaged);
    }

private:
    QString source(const QByteArray &content) const
    {
        return writeFile(at("source.csv"_s), content);
    }

    QStringList looksLeft() const { return QDir(folder()).entryList({"look-*"_s}, QDir::Files); }
    /// What the look ahead tells of that file.
    ImportOutlook outlook(const DeviceList &devices, const QString &path) const
    {
        ImportLook look(devices, folder() + QLatin1Char('/'));
        look.look(path);
        [&] { QTRY_VERIFY(look.outlook().state != ImportOutlook::State::Looking); }();
        [&] { QCOMPARE(looksLeft(), QStringList()); }();
        return look.outlook();
    }
};

QTEST_MAIN(TestCsvImport)
#include "tst_csvimport.moc"
