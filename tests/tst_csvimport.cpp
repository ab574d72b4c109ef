#include "DataSide.h"
#include "RawDatabase.h"
#include "export/CSVOutlookExport.h"
#include "import/ParseBase.h"
#include "import/ParseFactory.h"
#include "model/ExportType.h"
#include "model/ImportTarget.h"
#include "storage/ImportLook.h"

#include <QDir>
#include <QLocale>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <memory>

namespace {

const QString yesToAll = QStringLiteral("Yes to All");
const QString noToAll = QStringLiteral("No to All");

/// Remembers what an import asks for.
class RecordingTarget : public ImportTarget
{
public:
    bool clearOld() override
    {
        ++clears;
        return mayClear;
    }
    void addContacts(const QList<ContactInfo> &contacts) override { added += contacts; }

    bool mayClear = true;
    int clears = 0;
    QList<ContactInfo> added;
};

/// A device whose city, company and user name are in these letters.
ContactInfo deviceNamed(const QString &mac, const QString &text)
{
    ContactInfo device = stampedDevice(mac);
    device.username = text;
    device.company = text + QStringLiteral(" 1");
    device.city = text;
    return device;
}

} // namespace

class TestCsvImport : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void tellsEncodings();
    void readsEveryEncoding_data();
    void readsEveryEncoding();
    void refusesTextThatDoesNotFit_data();
    void refusesTextThatDoesNotFit();
    void fieldsArriveAsTheyStand();
    void lineEnds_data();
    void lineEnds();
    void readsUnicodeText();
    void readsInSteps();
    void workFilesArePrivate();
    void exportsTheseBytes_data();
    void exportsTheseBytes();
    void failingExports();
    void backupComesBack();
    void flagSaysWhetherTheListIsReplaced_data();
    void flagSaysWhetherTheListIsReplaced();
    void failedImportChangesNothing_data();
    void failedImportChangesNothing();
    void headerAloneIsAnEmptyList();
    void duplicatesOfAnImport_data();
    void duplicatesOfAnImport();
    void lookingDisturbsNoImportAndLeavesNothing();
    void endInTheMiddleKeepsTheOldRows();
    void refusedBackupStopsTheImport();
    void damagedStoreIsPutAside();
    void damagedStoreThatCannotBePutAside();
    void storeThatCannotBeReplacedLeavesTheList();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QString databasePath() const { return path("phonebook.db"); }
    QString writeFile(const QByteArray &content, const char *name = "source.csv") const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("The test cannot write its file");
        return file.fileName();
    }
    QStringList backups(const char *pattern) const
    {
        return QDir(path("backup")).entryList({QLatin1String(pattern)}, QDir::Files);
    }
    QByteArray backup(const QString &name) const { return fileContent(path("backup/") + name); }
    void blockBackups() const { writeFile("in the way", "backup"); }
    std::unique_ptr<ParseBase> parser(RecordingTarget &target) const
    {
        return std::unique_ptr<ParseBase>(
            ParseFactory().createParser(target, m_folder->path() + QLatin1Char('/')));
    }
    bool import(RecordingTarget &target, const QString &source, const QString &encoding = {}) const
    {
        const std::unique_ptr<ParseBase> parser = this->parser(target);
        return parser->import(source, encoding.isEmpty() ? parser->encodingOf(source) : encoding);
    }
    QStringList looksLeft() const
    {
        return QDir(m_folder->path()).entryList({QStringLiteral("look-*")}, QDir::Files);
    }
    /// What is said ahead of the import of that file.
    ImportOutlook outlook(const DeviceList &devices, const QString &source) const
    {
        ImportLook look(devices, m_folder->path() + QLatin1Char('/'));
        look.look(source);
        [&] { QTRY_VERIFY(look.outlook().state != ImportOutlook::State::Looking); }();
        [&] { QCOMPARE(looksLeft(), QStringList()); }();
        return look.outlook();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<User> m_user;
};

void TestCsvImport::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_user = std::make_unique<User>();
}

void TestCsvImport::cleanup()
{
    m_user.reset();
    QLocale::setDefault(QLocale::c());
}

void TestCsvImport::tellsEncodings()
{
    QLocale::setDefault(QLocale(QStringLiteral("zh_CN")));
    RecordingTarget target;
    const std::unique_ptr<ParseBase> parser(ParseFactory().createParser(target, m_folder->path()));
    const QString utf8 = QStringLiteral("UTF-8");
    const QString gbk = QStringLiteral("GBK");
    QCOMPARE(parser->encodingOf(writeFile("ASCII\n")), utf8);
    QCOMPARE(parser->encodingOf(writeFile("MAC\n\xd6\xd0\n")), gbk);
    // A character that the end of the file cuts off, and one that the end of a block does not.
    QCOMPARE(parser->encodingOf(writeFile("MAC\n\xe7\xbd")), gbk);
    QCOMPARE(parser->encodingOf(writeFile(QByteArray(65535, 'x') + "\xe7\xbd\x91")), utf8);
    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    QCOMPARE(parser->legacyEncodingName(), QStringLiteral("EUC-KR"));
}

void TestCsvImport::readsEveryEncoding_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasChineseTitles");

    const auto add = [](const char *locale, const char *codec, const char *mark, const char *text,
                        bool hasChineseTitles) {
        QTest::addRow("%s%s", codec, *mark ? " marked" : "")
            << QString::fromLatin1(locale) << QByteArray(codec) << QByteArray(mark)
            << QString::fromUtf8(text) << hasChineseTitles;
    };
    add("de_DE", "UTF-8", "", "网络 Größe 네트워크", true);
    add("zh_CN", "UTF-8", "\xef\xbb\xbf", "网络", true);
    add("zh_CN", "GBK", "", "网络部门", true);
    add("zh_TW", "Big5", "", "網路部門", false);
    add("zh_HK", "Big5-HKSCS", "", "深水埗啲網路", false);
    add("ja_JP", "Shift-JIS", "", "東京ネットワーク表ｶﾅ", false);
    add("ko_KR", "EUC-KR", "", "네트워크", false);
    add("ru_RU", "KOI8-R", "", "Отдел связи", false);
}

void TestCsvImport::readsEveryEncoding()
{
    QFETCH(QString, locale);
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, mark);
    QFETCH(QString, text);
    QFETCH(bool, hasChineseTitles);

    QLocale::setDefault(QLocale(locale));
    const QList<ContactInfo> devices = {deviceNamed(QStringLiteral("a"), text),
                                        deviceNamed(QStringLiteral("b"), text + text)};
    QTextCodec *const textCodec = QTextCodec::codecForName(codec);
    QVERIFY(textCodec);
    QStringList files = {csvText(englishCsvHeader(), devices)};
    if (hasChineseTitles)
        files.append(csvText(chineseCsvHeader(), devices, QStringLiteral("\r\n")));
    for (const QString &file : qAsConst(files)) {
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        RecordingTarget target;
        const QString source =
            writeFile(mark + textCodec->fromUnicode(file.constData(), file.size(), &state));
        QCOMPARE(outlook({}, source).encoding, QString::fromLatin1(codec));
        QVERIFY(import(target, source));
        QCOMPARE(target.clears, 1);
        QVERIFY(target.added == devices);
    }
}

void TestCsvImport::refusesTextThatDoesNotFit_data()
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
void TestCsvImport::refusesTextThatDoesNotFit()
{
    QFETCH(QString, encoding);
    QFETCH(QByteArray, mark);
    QFETCH(QByteArray, text);
    QFETCH(int, fault);
    QLocale::setDefault(QLocale(QStringLiteral("ru_RU"))); // KOI8-R fits any bytes
    const QByteArray good = csvText(englishCsvHeader(), stampedDevices("a")).toLatin1();
    RecordingTarget target;
    const std::unique_ptr<ParseBase> parser = this->parser(target);
    const QString source = writeFile(mark + good + text);
    QVERIFY(!parser->import(source, encoding.isEmpty() ? parser->encodingOf(source) : encoding));
    QCOMPARE(int(parser->fault()), fault);
    QVERIFY(!importFaultText(parser->fault()).isEmpty());
    QCOMPARE(target.clears, 0);
    QVERIFY(target.added.isEmpty());
}

void TestCsvImport::fieldsArriveAsTheyStand()
{
    ContactInfo expected;
    expected.mac = QStringLiteral("02:00:a7:00:00:01");
    expected.first_account = QStringLiteral("0007");
    expected.company = QStringLiteral(" Two  inner  blanks ");
    expected.password = QStringLiteral("a,\"b\",c");
    expected.username = QStringLiteral("\"");
    expected.city = QStringLiteral("ab");
    expected.department = QString(50000, QLatin1Char('x'));
    RecordingTarget target;
    // Titles in another order, case and spacing, one quoted, one unknown, most lacking.
    QVERIFY(import(target, writeFile("  random   PORT ,\"Company\",My IP,PASSWORD,username,City,"
                                     "Primary account,department,mac\r\n"
                                     ", Two  inner  blanks ,note,\"a,\"\"b\"\",c\",\"\"\"\","
                                     "a\rb,0007," +
                                     QByteArray(50000, 'x') +
                                     ",0200a7000001\r\n"
                                     "\r\n"
                                     " , ,\r\n"
                                     ",,,,,,,,short\r\n"
                                     ",,,,,,,,\"open\r\n"
                                     "\x1a")));
    QCOMPARE(target.added.size(), 3);
    for (const ContactField &field : contactFields())
        QCOMPARE(target.added.first().*field.member, expected.*field.member);
    QVERIFY(target.added.at(1) == deviceWithMac(QStringLiteral("short")));
    // The quote that was never closed has not taken the line end in.
    QVERIFY(target.added.last() == deviceWithMac(QStringLiteral("\"open")));
}

void TestCsvImport::lineEnds_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("devices");

    const auto add = [](const char *name, const QByteArray &content, const QStringList &devices) {
        QTest::newRow(name) << content << devices;
    };
    const QString a = QStringLiteral("a 1");
    const QString b = QStringLiteral("b 2");
    // Taken for blanks, they would make a title row of the whole list, and an empty list of the
    // import.
    add("CR", "MAC,Random Port\ra,1\rb,2\r", {a, b});
    add("CR, and LF once", "MAC,Random Port\ra,1\n\rb,2", {a, b});
    add("CR CR LF", "MAC,\"Random Port\"\r\r\na,\"1\"\r\r\nb,2\r\r\n", {a, b});
    add("LF, CR within", "MAC,Random Port\na\r,1\nb,\r2\r", {a, b});
    add("a zero byte", QByteArray("MAC,Random Port\na,\0001\nb,2\n", 25), {a, b});
    // The text is read in pieces of 256 KiB.
    for (int length = 262100; length < 262150; ++length) {
        const QByteArray field(length, 'x');
        QTest::addRow("CR LF behind %d", length)
            << "MAC,Random Port\r\na,\"" + field + "\"\r\nb,2\r\n"
            << QStringList{QStringLiteral("a ") + QString::fromLatin1(field), b};
    }
}

void TestCsvImport::lineEnds()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, devices);
    RecordingTarget target;
    QVERIFY(import(target, writeFile(content)));
    QStringList read;
    for (const ContactInfo &device : qAsConst(target.added))
        read.append(device.mac + QLatin1Char(' ') + device.random_port);
    QVERIFY2(read == devices, qPrintable(read.join(QLatin1Char('|')).left(200)));
}

/// As spreadsheets write it: tabs between the columns, quotes where a field has a comma.
void TestCsvImport::readsUnicodeText()
{
    const QString text = QStringLiteral("Company\tMAC\tCity\r\n"
                                        "\"a, b\"\t1\tc\"d\r\n"
                                        "\"say \"\"网络\"\"\"\t2\te, f\r\n");
    for (const char *codec : {"UTF-16LE", "UTF-16BE"}) {
        const QByteArray bytes =
            QTextCodec::codecForName(codec)->fromUnicode(QChar(QChar::ByteOrderMark) + text);
        RecordingTarget target;
        QVERIFY2(import(target, writeFile(bytes)), codec);
        QStringList read;
        for (const ContactInfo &device : qAsConst(target.added))
            read << device.mac << device.company << device.city;
        QCOMPARE(read.join(QLatin1Char('|')), QStringLiteral("1|a, b|c\"d|2|say \"网络\"|e, f"));
    }
}

/// Each step is short, so that the window can be painted between them, and no step's end may show
/// in the devices.
void TestCsvImport::readsInSteps()
{
    QLocale::setDefault(QLocale(QStringLiteral("zh_CN")));
    QList<ContactInfo> devices;
    for (int i = 0; i < 3000; ++i)
        devices.append(deviceNamed(QString::number(i), QString(i % 97, QChar(0x7f51))));
    const QString text = csvText(chineseCsvHeader(), devices, QStringLiteral("\r\n"));
    for (const char *codec : {"UTF-8", "GBK", "UTF-16"}) {
        const QString source = writeFile(QTextCodec::codecForName(codec)->fromUnicode(text));
        RecordingTarget target;
        const std::unique_ptr<ParseBase> parser = this->parser(target);
        parser->begin(source);
        int steps = 1;
        while (parser->readOn() == ParseBase::Reading::More)
            ++steps;
        QCOMPARE(parser->readOn(), ParseBase::Reading::Done);
        QVERIFY(parser->takeDevices() == devices);
        QVERIFY(parser->takeDevices().isEmpty());
        QVERIFY2(steps >= 20, qPrintable(QString::number(steps)));
        QCOMPARE(target.clears, 0);
    }
}

void TestCsvImport::workFilesArePrivate()
{
    const auto files = {"tmp.csv", "tmp1.csv", "tmp2.csv"};
    for (const char *name : files)
        writeFile("left by another import", name);
    const QString source = writeFile("MAC,Random Port\n\xec,b\n");
    QVERIFY(QFile::setPermissions(source, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    RecordingTarget target;
    const std::unique_ptr<ParseBase> parser = this->parser(target);
    QVERIFY(parser->import(source, QStringLiteral("KOI8-R")));
    QCOMPARE(fileContent(path("tmp.csv")), QByteArray("MAC,Random Port\n\xec,b\n"));
    QCOMPARE(fileContent(path("tmp1.csv")), QByteArray("MAC,Random Port\n\xd0\x9b,b\n"));
    QCOMPARE(fileContent(path("tmp2.csv")), QByteArray("MAC,Random Port\n\xd0\x9b,b\n"));
    for (const char *name : files)
        QCOMPARE(filePermissions(path(name)), QFile::ReadOwner | QFile::WriteOwner);
    // What a user takes from there must not be gone before it is read.
    QVERIFY(!parser->import(path("tmp1.csv"), QStringLiteral("UTF-8")));
    QCOMPARE(int(parser->fault()), int(ImportFault::OwnWorkFile));
    QVERIFY(QFile::exists(path("tmp1.csv")));
    parser->removeWorkFiles();
    QVERIFY(!parser->import(path("no such file"), QStringLiteral("UTF-8")));
    QCOMPARE(int(parser->fault()), int(ImportFault::Unreadable));
    for (const char *name : files)
        QVERIFY(!QFile::exists(path(name)));
    QVERIFY(QFile::exists(source));
}

void TestCsvImport::exportsTheseBytes_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("rowEnd");

    QTest::newRow("English")
        << int(CsvEnglish)
        << QByteArray("MAC,Product Model,Primary Account,SIP Server,SIP User ID,Authentication ID,"
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

void TestCsvImport::exportsTheseBytes()
{
    QFETCH(int, type);
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, rowEnd);

    Run run(m_folder->path());
    const QString utf8 = QStringLiteral("UTF-8");
    const QString name = QStringLiteral("x.csv");
    QVERIFY(run.mgr.exportDevices(type, utf8, name, m_folder->path()));
    QCOMPARE(fileContent(path("x.csv.csv")), header);

    QVERIFY(run.mgr.openDatabase());
    ContactInfo device = stampedDevice(QStringLiteral("d"));
    device.company = QStringLiteral(" 网络, \"AG\" ");
    run.mgr.addContacts({device, deviceWithMac(QStringLiteral("e"))});
    QVERIFY(run.mgr.exportDevices(type, utf8, name, m_folder->path()));
    const QByteArray rows =
        "d.mac,d.product,d.first_account,d.sip_server,d.sip_user_id,d.auth_id,d.password,"
        "d.speech_coding1,d.speech_coding2,d.username,d.language,d.random_port,d.keep_alive,d.ip,"
        "d.subnet,d.gateway_ip,d.dns_server1,d.dns_server2,d.phonebook_path,d.dial_plan,d.city,"
        " 网络, \"AG\" ,d.department,d.proxy_server" +
        rowEnd + 'e' + QByteArray(23, ',') + rowEnd;
    QCOMPARE(fileContent(path("x.csv.csv")), header + rows);

    QVERIFY(run.mgr.exportDevices(type, QStringLiteral("GBK"), name, m_folder->path()));
    QCOMPARE(fileContent(path("x.csv.csv")),
             QTextCodec::codecForName("GBK")->fromUnicode(QString::fromUtf8(header + rows)));
}

void TestCsvImport::failingExports()
{
    CSVOutlookExport english;
    QList<ContactInfo> devices = stampedDevices("a");
    const QString utf8 = QStringLiteral("UTF-8");
    writeFile("old", "list.csv");
    QVERIFY(!english.exportFile(QStringLiteral("no such codec"), path("list"), devices));
    QVERIFY(!english.exportFile(utf8, QString(), devices));
    QVERIFY(!english.exportFile(utf8, path("no such folder/list"), devices));
    QCOMPARE(fileContent(path("list.csv")), QByteArray("old"));
}

/// Unlike an export, a backup gives back what an export would break.
void TestCsvImport::backupComesBack()
{
    Run run(m_folder->path(), "");
    QList<ContactInfo> devices = stampedDevices("a b c d");
    devices[0].company = QStringLiteral("\"Net\", Ltd.");
    devices[1].company = QStringLiteral("\"");
    devices[1].proxy_server = QStringLiteral("\"\",");
    devices[2].password = QStringLiteral("a\",b");
    devices[2].city = QStringLiteral("zero") + QChar(QChar::Null);
    devices[3].mac = QStringLiteral(",\"");
    devices[3].company = QStringLiteral("\r\nAcme\n\r\nLtd\r\n");
    run.mgr.addContacts(devices);
    QVERIFY(run.deleteAll());
    const QStringList names = backups("devices-*.csv");
    QCOMPARE(names.size(), 1);
    QVERIFY(run.import(path("backup/") + names.first()));
    const QList<ContactInfo> restored = run.contacts();
    QCOMPARE(restored.size(), devices.size());
    devices[2].city.chop(1);
    devices[3].company = QStringLiteral("Acme Ltd");
    for (int row = 0; row < devices.size(); ++row) {
        for (const ContactField &field : contactFields())
            QCOMPARE(restored.at(row).*field.member, devices.at(row).*field.member);
    }
}

void TestCsvImport::flagSaysWhetherTheListIsReplaced_data()
{
    QTest::addColumn<bool>("flag");
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("replaces") << true << true;
    QTest::newRow("replaces rows that were never loaded") << true << false;
    QTest::newRow("adds") << false << true;
}

void TestCsvImport::flagSaysWhetherTheListIsReplaced()
{
    QFETCH(bool, flag);
    QFETCH(bool, isLoaded);
    const QList<ContactInfo> oldDevices = stampedDevices("a b");
    {
        Run before(m_folder->path());
        QVERIFY(before.mgr.openDatabase());
        before.mgr.addContacts(oldDevices);
    }
    Run run(m_folder->path(), "");
    if (isLoaded)
        QVERIFY(run.load());
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("HTTPD/MACCFG")));
    writeFile("old", "HTTPD/MACCFG/cfga");
    const QList<ContactInfo> newDevices = stampedDevices("c d e");
    run.mgr.setImportFlag(flag);
    QVERIFY(run.import(writeFile(csvText(englishCsvHeader(), newDevices).toUtf8())));

    const QList<ContactInfo> expected = flag ? newDevices : oldDevices + newDevices;
    QVERIFY(run.contacts() == numbered(expected));
    QCOMPARE(RawDatabase(databasePath()).difference(expected), QString());
    QCOMPARE(QFile::exists(path("HTTPD")), !flag);
    const QStringList names = backups("*");
    QCOMPARE(names.size(), flag ? 1 : 0);
    if (flag) {
        QCOMPARE(backup(names.first()), backupText(oldDevices));
        QCOMPARE(filePermissions(path("backup/") + names.first()),
                 QFile::ReadOwner | QFile::WriteOwner);
    }
    QVERIFY(m_user->boxes.isEmpty());
}

void TestCsvImport::failedImportChangesNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("exists");

    const auto add = [](const char *name, const QByteArray &content) {
        QTest::newRow(name) << content << true;
    };
    QTest::newRow("missing file") << QByteArray() << false;
    add("empty file", "");
    add("binary file", QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) + QByteArray(5000, '\0'));
    add("wrong encoding", QTextCodec::codecForName("Shift-JIS")
                              ->fromUnicode(csvText(chineseCsvHeader(), stampedDevices("x"))));
    add("mail header", "Given Name,Phone 1 - Value\nx,y\n");
    add("device header without a MAC", "Random Port,Gateway IP,Dial Plan\nx,y,z\n");
    add("no header", csvText(QString(), stampedDevices("x")).toUtf8().mid(1));
}

void TestCsvImport::failedImportChangesNothing()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, exists);
    Run run(m_folder->path(), "a b");
    const QList<ContactInfo> before = run.contacts();
    const QByteArray database = fileContent(databasePath());
    QVERIFY(!database.isEmpty());
    run.changes.clear();
    const QString source = exists ? writeFile(content) : path("source.csv");
    for (const bool flag : {false, true}) {
        run.mgr.setImportFlag(flag);
        const ImportOutlook ahead = outlook(run.mgr.devices(), source);
        QVERIFY(ahead.state == ImportOutlook::State::Refused);
        QVERIFY(!run.import(source));
        QCOMPARE(ahead.reason, run.lastReason);
        QVERIFY(run.contacts() == before);
        QVERIFY(fileContent(databasePath()) == database);
        QVERIFY(run.changes.isEmpty());
        QVERIFY(backups("*").isEmpty());
        QVERIFY(m_user->boxes.isEmpty());
    }
}

/// An exported empty list is a list as well.
void TestCsvImport::headerAloneIsAnEmptyList()
{
    Run run(m_folder->path(), "");
    const QList<ContactInfo> devices = stampedDevices("a b");
    run.mgr.addContacts(devices);
    const QString source = writeFile(englishCsvHeader().toUtf8());
    QVERIFY(run.import(source));
    QVERIFY(run.contacts() == numbered(devices));
    run.mgr.setImportFlag(true);
    QVERIFY(run.import(source));
    QCOMPARE(run.mgr.devices().size(), 0);
    QCOMPARE(RawDatabase(databasePath()).difference({}), QString());
    QCOMPARE(backups("devices-*.csv").size(), 1);
}

void TestCsvImport::duplicatesOfAnImport_data()
{
    QTest::addColumn<QByteArray>("imported");
    QTest::addColumn<QStringList>("answers");
    QTest::addColumn<QString>("replaced");
    QTest::addColumn<int>("asked");
    QTest::addColumn<bool>("isOfMany");
    QTest::addColumn<int>("count");

    const auto add = [](const char *name, const QByteArray &imported, const QStringList &answers,
                        const char *replaced, int asked, bool isOfMany, int count) {
        QTest::newRow(name) << imported << answers << QString::fromLatin1(replaced) << asked
                            << isOfMany << count;
    };
    add("one, Yes", "x b", {yes}, "b", 1, false, 4);
    add("one, No", "x b", {no}, "", 1, false, 4);
    add("many, Yes", "a x b c y", {yes}, "abc", 3, true, 5);
    add("many, Yes to All", "a x b c y", {yesToAll}, "abc", 1, true, 5);
    add("many, No, then Yes to All", "a x b c y", {no, yesToAll}, "bc", 2, true, 5);
    add("many, Yes, then No to All", "a x b c y", {yes, noToAll}, "a", 2, true, 5);
    add("one twice in the file", "x x", {no}, "", 1, false, 4);
    add("one thrice in the file", "x x x", {noToAll}, "", 1, true, 4);
}

void TestCsvImport::duplicatesOfAnImport()
{
    QFETCH(QByteArray, imported);
    QFETCH(QStringList, answers);
    QFETCH(QString, replaced);
    QFETCH(int, asked);
    QFETCH(bool, isOfMany);
    QFETCH(int, count);

    Run run(m_folder->path(), "a b c");
    QList<ContactInfo> newDevices = stampedDevices(imported.constData());
    for (ContactInfo &device : newDevices)
        device.company = QStringLiteral("new");
    m_user->answers = answers;
    const QString source = writeFile(csvText(englishCsvHeader(), newDevices).toUtf8());
    const ImportOutlook ahead = outlook(run.mgr.devices(), source);
    QVERIFY(run.import(source));

    QCOMPARE(run.mgr.devices().size(), count);
    QCOMPARE(ahead.rows, newDevices.size());
    QCOMPARE(ahead.listed + ahead.added, count);
    QCOMPARE(ahead.replacing, ahead.rows - ahead.added - imported.count('x') + 1);
    QCOMPARE(ahead.repeated, imported.count('x') - 1);
    QCOMPARE(ahead.missing, ahead.listed - ahead.replacing);
    const QList<ContactInfo> devices = run.contacts();
    for (int row = 0; row < 3; ++row) {
        const QString stamp = QStringLiteral("abc").mid(row, 1);
        QCOMPARE(devices.at(row).mac, stamp + QStringLiteral(".mac"));
        QCOMPARE(devices.at(row).company == QLatin1String("new"), replaced.contains(stamp));
    }
    QCOMPARE(RawDatabase(databasePath()).difference(devices), QString());
    QCOMPARE(run.changes.size(), 1);
    QCOMPARE(m_user->boxes.size(), asked);
    const QSet<QString> buttons =
        isOfMany ? QSet<QString>{yes, no, yesToAll, noToAll} : QSet<QString>{yes, no};
    for (const SeenBox &box : qAsConst(m_user->boxes))
        QCOMPARE(box.buttons, buttons);
    const QString first =
        imported.contains('a') ? QStringLiteral("a") : QString::fromLatin1(imported.right(1));
    QCOMPARE(m_user->titles().first(), replaceAction);
    QCOMPARE(m_user->boxes.first().text,
             QStringLiteral("MAC:%1.mac has already exist,do you want to replace it?").arg(first));
}

void TestCsvImport::lookingDisturbsNoImportAndLeavesNothing()
{
    Run run(m_folder->path(), "");
    QByteArray list = "MAC,Random Port\n";
    for (int i = 0; i < 30000; ++i)
        list += "02:00:A7:" + QByteArray::number(i) + ",1\n";
    const QString source = writeFile(list);
    {
        ImportLook look(run.mgr.devices(), m_folder->path() + QLatin1Char('/'));
        look.look(source);
        QVERIFY(run.import(source));
        QCOMPARE(run.mgr.devices().size(), 30000);
        QTRY_VERIFY(look.outlook().state == ImportOutlook::State::Ready);
        QCOMPARE(look.outlook().added, 30000);
        look.look(source);
        QVERIFY(!looksLeft().isEmpty());
        look.stop();
        QCOMPARE(looksLeft(), QStringList());
        look.look(source);
    }
    QCOMPARE(looksLeft(), QStringList());
    QVERIFY(outlook(run.mgr.devices(), writeFile(list, "tmp.csv")).state ==
            ImportOutlook::State::Refused);
}

/// The program may be killed, or the session end, while the user thinks about a question.
void TestCsvImport::endInTheMiddleKeepsTheOldRows()
{
    Run run(m_folder->path(), "");
    const QList<ContactInfo> oldDevices = stampedDevices("a b c");
    run.mgr.addContacts(oldDevices);
    m_user->answers = QStringList{yes};
    m_user->meanwhile = [&] {
        QCOMPARE(RawDatabase(databasePath()).difference(oldDevices), QString());
        QVERIFY(run.mgr.keepUnsavedList());
        run.mgr.close();
    };
    run.mgr.setImportFlag(true);
    QVERIFY(!run.import(writeFile("MAC,Random Port\nd,1\nd,2\ne,3\n")));
    QCOMPARE(m_user->titles(), QStringList{replaceAction});
    QCOMPARE(RawDatabase(databasePath()).difference(oldDevices), QString());
}

void TestCsvImport::refusedBackupStopsTheImport()
{
    blockBackups();
    Run run(m_folder->path(), "");
    const QList<ContactInfo> devices = stampedDevices("a b");
    run.mgr.addContacts(devices);
    run.mgr.setImportFlag(true);
    const QString source = writeFile("MAC,Random Port\nc,1\n");
    m_user->answers = QStringList{no};
    QVERIFY(!run.import(source));
    QCOMPARE(m_user->titles(), QStringList{backupError});
    QVERIFY(run.contacts() == numbered(devices));
    QCOMPARE(RawDatabase(databasePath()).difference(devices), QString());
}

void TestCsvImport::damagedStoreIsPutAside()
{
    const QByteArray damaged = "This is no database at all.";
    writeFile(damaged, "phonebook.db");
    Run run(m_folder->path());
    QVERIFY(!run.mgr.openDatabase());
    const QString source = writeFile("MAC,Random Port\nc,1\n");
    QVERIFY(!run.import(path("no such file")));
    QCOMPARE(fileContent(databasePath()), damaged);

    run.mgr.setImportFlag(true);
    QVERIFY(run.import(source));
    QVERIFY(run.mgr.isStoreUsable());
    QCOMPARE(RawDatabase(databasePath()).rows().size(), 1);
    const QStringList names = backups("phonebook-*.db");
    QCOMPARE(names.size(), 1);
    QCOMPARE(backup(names.first()), damaged);
}

/// What is left of a damaged file may be all that there is of the list.
void TestCsvImport::damagedStoreThatCannotBePutAside()
{
    blockBackups();
    const QByteArray damaged = "This is no database at all.";
    writeFile(damaged, "phonebook.db");
    const QString source = writeFile("MAC,Random Port\nc,1\n");
    Run run(m_folder->path());
    QVERIFY(!run.mgr.openDatabase());
    run.mgr.setImportFlag(true);
    m_user->answers = QStringList{no};
    QVERIFY(!run.import(source));
    QCOMPARE(m_user->titles(), QStringList{backupError});
    QVERIFY(!run.mgr.isStoreUsable());
    QCOMPARE(fileContent(databasePath()), damaged);
    m_user->answers = QStringList{yes};
    QVERIFY(run.import(source));
    QCOMPARE(RawDatabase(databasePath()).rows().size(), 1);
}

void TestCsvImport::storeThatCannotBeReplacedLeavesTheList()
{
    blockBackups();
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("phonebook.db/something")));
    Run run(m_folder->path());
    QVERIFY(!run.mgr.openDatabase());
    m_user->answers = QStringList{yes};
    run.mgr.addContacts(stampedDevices("a"));
    run.mgr.setImportFlag(true);
    QVERIFY(!run.import(writeFile("MAC,Random Port\nc,1\n")));
    QVERIFY(run.contacts() == numbered(stampedDevices("a")));
}

QTEST_MAIN(TestCsvImport)
#include "tst_csvimport.moc"
