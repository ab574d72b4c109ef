#include "FilePermissions.h"
#include "TestDevices.h"
#include "export/ExportBase.h"
#include "export/ExportFactory.h"
#include "model/PhoneFamily.h"
#include "model/ValueTables.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>

Q_DECLARE_METATYPE(ExportType)

namespace {

const QString mac = "02:00:A7:A1:B2:C3"_s;
const QString requestedName = "cfg0200a7a1b2c3.xml"_s;
constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

bool exportTo(const QString &path, QList<ContactInfo> devices, ExportType type = DeskPhoneXml)
{
    const std::unique_ptr<ExportBase> exporter(ExportFactory::instance()->createExporter(type));
    return exporter->exportFile("no such codec"_s, path, devices);
}

using Fields = QList<QPair<QString ContactInfo::*, QString>>;
using I = ContactInfo;

ContactInfo deviceOf(const Fields &fields, ContactInfo device = {})
{
    device.mac = mac;
    for (const auto &[member, text] : fields)
        device.*member = text;
    return device;
}

ContactInfo fullDevice()
{
    return deviceOf({{&I::ip, "192.168.1.20"_s},
                     {&I::subnet, "255.254.253.0"_s},
                     {&I::gateway_ip, "10.11.12.13"_s},
                     {&I::dns_server1, "8.7.6.5"_s},
                     {&I::dns_server2, "1.2.3.4"_s},
                     {&I::speech_coding1, "G729A/B"_s},
                     {&I::speech_coding2, "L16-256"_s}},
                    stampedDevice("x"_s));
}

} // namespace

class TestProvisioningXml : public QObject
{
    Q_OBJECT

private slots:
    void documentIsAsWrittenByHand_data()
    {
        const QString highSurrogate = QChar(0xD83D);
        const QString lowSurrogate = QChar(0xDCDE);
        const Fields hardTexts = {{&I::sip_server, "a&b<c>d"_s},
                                  {&I::sip_user_id, "\"quoted\" and 'single'"_s},
                                  {&I::first_account, "北京 总机"_s},
                                  {&I::username, "Zoë 📞"_s},
                                  {&I::auth_id, "&amp;"_s},
                                  {&I::password, "]]>"_s},
                                  {&I::proxy_server, "  blanks  "_s},
                                  {&I::dial_plan, "bell\anul\0\x1B"_s},
                                  {&I::language, "lo"_s + highSurrogate + "ne"_s + lowSurrogate},
                                  {&I::random_port, lowSurrogate + "swapped"_s + highSurrogate},
                                  {&I::keep_alive, "last\uFFFE\uFFFF"_s + highSurrogate},
                                  {&I::phonebook_path, "tab\tstays"_s},
                                  {&I::speech_coding1, "pcmu"_s},
                                  {&I::ip, "\x1"
                                           "1.2.3"_s},
                                  {&I::subnet, "1.2.3.4.5"_s}};
        const Fields sparse = {{&I::speech_coding1, "G.722"_s}, {&I::speech_coding2, "PCMU"_s},
                               {&I::ip, "192.168.1"_s},         {&I::subnet, "255.255.255.0"_s},
                               {&I::dns_server1, "10..0.1"_s},  {&I::dns_server2, "a.<. c."_s}};
        QTest::addColumn<ContactInfo>("device");
        QTest::addColumn<ExportType>("type");
        QTest::newRow("desk-full") << fullDevice() << DeskPhoneXml;
        QTest::newRow("cordless-full") << fullDevice() << CordlessXml;
        QTest::newRow("desk-hard-texts") << deviceOf(hardTexts) << DeskPhoneXml;
        QTest::newRow("desk-sparse") << deviceOf(sparse) << DeskPhoneXml;
    }

    void documentIsAsWrittenByHand()
    {
        QFETCH(ContactInfo, device);
        QFETCH(ExportType, type);
        const QTemporaryDir folder;
        const QString path = folder.filePath(requestedName);
        QVERIFY(exportTo(path, {device}, type));
        const QByteArray wanted = fileContent("%1/tests/data/provision-%2.xml"_s.arg(
            QLatin1String(VL_SOURCE_DIR), QLatin1String(QTest::currentDataTag())));
        QVERIFY(!wanted.isEmpty());
        QCOMPARE(fileContent(path), wanted);
    }

    void choosesTheDeviceByTheFileName_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QStringList>("macs");
        QTest::addColumn<int>("chosen"); // -1: none

        const auto row = [](const char *name, const QStringList &macs, int chosen,
                            const QString &fileName = requestedName) {
            QTest::newRow(name) << fileName << macs << chosen;
        };
        const QString other = "02:00:a7:00:00:01"_s;
        row("colons, upper case", {other, mac}, 1);
        row("another notation", {other, " 02-00.a7A1B2 C3"_s}, 1);
        row("two with one MAC", {mac.toLower(), mac}, 0);
        row("upper-case request", {mac}, -1, "cfg0200A7A1B2C3.xml"_s);
        row("cfg one place late", {mac, QString()}, -1, "_cfg0200a7a1b2c3.xml"_s);
        row("short name", {mac, "0:2"_s}, 1, "cfg02"_s);
        row("no cfg, a MAC of colons", {mac, "::"_s, QString()}, 1, "CFG0200a7a1b2c3.xml"_s);
        row("longer record", {mac + ":FF"_s}, -1);
    }

    void choosesTheDeviceByTheFileName()
    {
        QFETCH(QString, fileName);
        QFETCH(QStringList, macs);
        QFETCH(int, chosen);
        QList<ContactInfo> devices;
        for (const QString &stored : qAsConst(macs)) {
            devices.append(deviceWithMac(stored));
            devices.last().first_account = "no.%1"_s.arg(devices.size() - 1);
        }
        for (const PhoneFamily &family : families) {
            const QTemporaryDir parent; // a folder's name must not count for the file's
            QVERIFY(QDir(parent.path()).mkdir("cfgfolder"_s));
            const QString path = parent.filePath("cfgfolder/"_s) + fileName;
            QCOMPARE(exportTo(path, devices, family.document), chosen >= 0);
            QCOMPARE(QDir(QFileInfo(path).path()).isEmpty(), chosen < 0);
            const QByteArray account = ">no." + QByteArray::number(chosen) + '<';
            QCOMPARE(fileContent(path).contains(account), chosen >= 0);
        }
    }

    void everyCodecHasItsNumber()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(requestedName);
        QStringList numbers;
        QStringList found;
        for (const QString &name : speechCodecs()) {
            ContactInfo device = deviceWithMac(mac);
            device.speech_coding1 = device.speech_coding2 = name;
            QVERIFY(exportTo(path, {device}));
            const QString document = QString::fromUtf8(fileContent(path));
            const QString number = document.section("P57>"_s, 1, 1).section(QLatin1Char('<'), 0, 0);
            QVERIFY2(!number.isEmpty() && !numbers.contains(number), qPrintable(name));
            QVERIFY(document.contains("<P58>%1</P58>"_s.arg(number)));
            numbers += number;
            found += name + QLatin1Char(' ') + number;
        }
        for (const char *known : {"PCMU 0", "PCMA 8", "G722 9", "G729A/B 18", "G723.1 4",
                                  "G726-32 2", "GSM 3", "L16-256 98"})
            QVERIFY2(found.contains(QLatin1String(known)), known);
    }

    void writesOnlyWhatHasChangedAndForTheOwnerAlone()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(requestedName);
        QVERIFY(exportTo(path, {fullDevice()}));
        QCOMPARE(filePermissions(path), ownerOnly);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-3),
                                 QFileDevice::FileModificationTime));
        file.close();
        const QDateTime before = QFileInfo(path).lastModified();
        // The same length, so that nothing but the contents can tell them apart.
        ContactInfo changed = fullDevice();
        changed.password = "x.passwore"_s;
        for (const ContactInfo &device : {fullDevice(), changed}) {
            QVERIFY(QFile::setPermissions(path, ownerOnly | QFile::ReadGroup | QFile::ReadOther));
            QVERIFY(exportTo(path, {device}));
            QCOMPARE(QFileInfo(path).lastModified() > before, device == changed);
            QVERIFY(fileContent(path).contains("<P34>" + device.password.toLatin1() + "</P34>"));
            QCOMPARE(filePermissions(path), ownerOnly);
        }
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{requestedName});
    }

    /// Two requests at a time for a device that is being edited, and a reader: long documents, so
    /// that one that is written in place would be seen in pieces.
    void readersGetWholeDocuments()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(requestedName);
        ContactInfo versions[] = {fullDevice(), fullDevice()};
        QByteArray documents[2];
        for (int i = 0; i < 2; ++i) {
            versions[i].dial_plan = QString(200000 + 100000 * i, QLatin1Char('a'));
            QVERIFY(exportTo(path, {versions[i]}));
            documents[i] = fileContent(path);
            QVERIFY(documents[i].size() > 200000);
        }
        std::atomic<int> writing{2};
        std::atomic<int> written{0};
        std::atomic<int> failed{0};
        std::atomic<int> seen[2] = {{0}, {0}};
        const auto write = [&] {
            for (int i = 0; i < 30 || ((seen[0] < 5 || seen[1] < 5) && i < 5000); ++i) {
                if (!exportTo(path, {versions[i % 2]}))
                    ++failed;
                ++written;
            }
            --writing;
        };
        std::thread first(write);
        std::thread second(write);
        int torn = 0;
        while (writing > 0) {
            const QByteArray found = fileContent(path);
#ifdef Q_OS_WIN
            // A reader keeps the writers out there, and no real one reads without a pause.
            for (const int before = written; written == before && writing > 0;)
                QThread::yieldCurrentThread();
            if (found.isEmpty())
                continue; // refused, at the moment of the replacement
#endif
            if (found == documents[0])
                ++seen[0];
            else if (found == documents[1])
                ++seen[1];
            else
                ++torn;
        }
        first.join();
        second.join();
        QCOMPARE(torn, 0);
        QCOMPARE(failed.load(), 0);
        QVERIFY(seen[0] > 0 && seen[1] > 0);
    }
};

QTEST_GUILESS_MAIN(TestProvisioningXml)
#include "tst_provisioningxml.moc"
