#include "FilePermissions.h"
#include "TestDevices.h"
#include "export/ExportBase.h"
#include "export/ExportFactory.h"
#include "model/ExportType.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

Q_DECLARE_METATYPE(ExportType)

namespace {

const QString mac = QStringLiteral("02:00:A7:A1:B2:C3");
const QString requestedName = QStringLiteral("cfg0200a7a1b2c3.xml");
constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

QByteArray handWritten(const QString &name)
{
    return fileContent(QStringLiteral(VL_SOURCE_DIR "/tests/data/") + name);
}

bool exportTo(const QString &path, QList<ContactInfo> devices, ExportType type = DeskPhoneXml)
{
    const std::unique_ptr<ExportBase> exporter(ExportFactory::instance()->createExporter(type));
    return exporter->exportFile(QStringLiteral("no such codec"), path, devices);
}

ContactInfo fullDevice()
{
    ContactInfo device = stampedDevice(QStringLiteral("x"));
    device.mac = mac;
    device.ip = QStringLiteral("192.168.1.20");
    device.subnet = QStringLiteral("255.254.253.0");
    device.gateway_ip = QStringLiteral("10.11.12.13");
    device.dns_server1 = QStringLiteral("8.7.6.5");
    device.dns_server2 = QStringLiteral("1.2.3.4");
    device.speech_coding1 = QStringLiteral("G729A/B");
    device.speech_coding2 = QStringLiteral("L16-256");
    return device;
}

ContactInfo hardTextsDevice()
{
    const QChar highSurrogate(0xD83D);
    const QChar lowSurrogate(0xDCDE);
    ContactInfo device = deviceWithMac(mac);
    device.sip_server = QStringLiteral("a&b<c>d");
    device.sip_user_id = QStringLiteral("\"quoted\" and 'single'");
    device.first_account = QString::fromUtf8("北京 总机");
    device.username = QString::fromUtf8("Zoë 📞");
    device.auth_id = QStringLiteral("&amp;");
    device.password = QStringLiteral("]]>");
    device.proxy_server = QStringLiteral("  blanks  ");
    device.dial_plan =
        QStringLiteral("bell") + QChar(7) + QStringLiteral("nul") + QChar(0) + QChar(0x1B);
    device.language = QStringLiteral("lo") + highSurrogate + QStringLiteral("ne") + lowSurrogate;
    device.random_port = lowSurrogate + QStringLiteral("swapped") + highSurrogate;
    device.keep_alive = QStringLiteral("last") + QChar(0xFFFE) + QChar(0xFFFF) + highSurrogate;
    device.phonebook_path = QStringLiteral("tab\tstays");
    device.speech_coding1 = QStringLiteral("pcmu");
    device.ip = QString(QChar(1)) + QStringLiteral("1.2.3");
    device.subnet = QStringLiteral("1.2.3.4.5");
    return device;
}

ContactInfo sparseDevice()
{
    ContactInfo device = deviceWithMac(mac);
    device.speech_coding1 = QStringLiteral("G.722");
    device.speech_coding2 = QStringLiteral("PCMU");
    device.ip = QStringLiteral("192.168.1");
    device.subnet = QStringLiteral("255.255.255.0");
    device.dns_server1 = QStringLiteral("10..0.1");
    device.dns_server2 = QStringLiteral("a.<. c.");
    return device;
}

} // namespace

class TestProvisioningXml : public QObject
{
    Q_OBJECT

private slots:
    void documentIsAsWrittenByHand_data();
    void documentIsAsWrittenByHand();
    void choosesTheDeviceByTheFileName_data();
    void choosesTheDeviceByTheFileName();
    void everyCodecHasItsNumber();
    void onlyTheOwnerMayRead();
    void unchangedDocumentIsLeftAlone();
    void failsWhereNoFileCanBeWritten();
    void readersGetWholeDocuments();
};

void TestProvisioningXml::documentIsAsWrittenByHand_data()
{
    QTest::addColumn<ContactInfo>("device");
    QTest::addColumn<ExportType>("type");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const ContactInfo &device, ExportType type) {
        QTest::newRow(name) << device << type
                            << QStringLiteral("provision-%1.xml").arg(QLatin1String(name));
    };
    row("desk-full", fullDevice(), DeskPhoneXml);
    row("cordless-full", fullDevice(), CordlessXml);
    row("desk-hard-texts", hardTextsDevice(), DeskPhoneXml);
    row("desk-sparse", sparseDevice(), DeskPhoneXml);
}

void TestProvisioningXml::documentIsAsWrittenByHand()
{
    QFETCH(ContactInfo, device);
    QFETCH(ExportType, type);
    QFETCH(QString, expected);
    const QTemporaryDir folder;
    const QString path = folder.filePath(requestedName);

    QVERIFY(exportTo(path, {device}, type));
    const QByteArray wanted = handWritten(expected);
    QVERIFY(!wanted.isEmpty());
    QCOMPARE(fileContent(path), wanted);
}

void TestProvisioningXml::choosesTheDeviceByTheFileName_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QStringList>("macs");
    QTest::addColumn<int>("chosen"); // -1: none

    const QString other = QStringLiteral("02:00:a7:00:00:01");
    const QString none;
    QTest::newRow("stored with colons, upper case")
        << requestedName << QStringList{other, mac} << 1;
    QTest::newRow("stored in another notation")
        << requestedName << QStringList{other, QStringLiteral(" 02-00.a7A1B2 C3")} << 1;
    QTest::newRow("two with one MAC") << requestedName << QStringList{mac.toLower(), mac} << 0;
    QTest::newRow("upper-case request")
        << QStringLiteral("cfg0200A7A1B2C3.xml") << QStringList{mac} << -1;
    QTest::newRow("cfg one place late")
        << QStringLiteral("_cfg0200a7a1b2c3.xml") << QStringList{mac, none} << -1;
    QTest::newRow("short name") << QStringLiteral("cfg02")
                                << QStringList{mac, QStringLiteral("0:2")} << 1;
    QTest::newRow("no cfg, a MAC of colons") << QStringLiteral("CFG0200a7a1b2c3.xml")
                                             << QStringList{mac, QStringLiteral("::"), none} << 1;
    QTest::newRow("longer record")
        << requestedName << QStringList{mac + QStringLiteral(":FF")} << -1;
}

void TestProvisioningXml::choosesTheDeviceByTheFileName()
{
    QFETCH(QString, fileName);
    QFETCH(QStringList, macs);
    QFETCH(int, chosen);

    // The folder's name must not count for the file's.
    QTemporaryDir parent;
    QVERIFY(QDir(parent.path()).mkdir(QStringLiteral("cfgfolder")));
    const QString path = parent.filePath(QStringLiteral("cfgfolder/")) + fileName;
    QList<ContactInfo> devices;
    for (int i = 0; i < macs.size(); ++i) {
        devices.append(deviceWithMac(macs.at(i)));
        devices.last().first_account = QStringLiteral("account %1").arg(i);
    }
    for (const ExportType type : {DeskPhoneXml, CordlessXml}) {
        QFile::remove(path);
        QCOMPARE(exportTo(path, devices, type), chosen >= 0);
        if (chosen < 0) {
            QVERIFY(QDir(QFileInfo(path).path()).isEmpty());
            continue;
        }
        const QByteArray account = "<P270>account " + QByteArray::number(chosen) + "</P270>";
        QVERIFY2(fileContent(path).contains(account), fileContent(path).constData());
    }
}

void TestProvisioningXml::everyCodecHasItsNumber()
{
    const QTemporaryDir folder;
    const QList<QPair<const char *, QByteArray>> numbers = {
        {"PCMU", "0"},   {"PCMA", "8"},    {"G722", "9"}, {"G729A/B", "18"},
        {"G723.1", "4"}, {"G726-32", "2"}, {"GSM", "3"},  {"L16-256", "98"}};
    for (const auto &[name, number] : numbers) {
        ContactInfo device = deviceWithMac(mac);
        device.speech_coding1 = device.speech_coding2 = QLatin1String(name);
        QVERIFY(exportTo(folder.filePath(requestedName), {device}));
        const QByteArray document = fileContent(folder.filePath(requestedName));
        QVERIFY2(document.contains("<P57>" + number + "</P57>"), name);
        QVERIFY2(document.contains("<P58>" + number + "</P58>"), name);
    }
}

void TestProvisioningXml::onlyTheOwnerMayRead()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(requestedName);
    QVERIFY(exportTo(path, {fullDevice()}));
    QCOMPARE(filePermissions(path), ownerOnly);

    // Also when it takes the place of one that others could read, whatever that held.
    for (const ContactInfo &device : {fullDevice(), sparseDevice()}) {
        QVERIFY(QFile::setPermissions(path, ownerOnly | QFile::ReadGroup | QFile::ReadOther));
        QVERIFY(exportTo(path, {device}));
        QCOMPARE(filePermissions(path), ownerOnly);
    }
}

void TestProvisioningXml::unchangedDocumentIsLeftAlone()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(requestedName);
    QVERIFY(exportTo(path, {fullDevice()}));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QDateTime old = QDateTime::currentDateTime().addDays(-3);
    QVERIFY(file.setFileTime(old, QFileDevice::FileModificationTime));
    file.close();
    const QDateTime before = QFileInfo(path).lastModified();

    QVERIFY(exportTo(path, {fullDevice()}));
    QCOMPARE(QFileInfo(path).lastModified(), before);

    // The same length, so that nothing but the contents can tell them apart.
    ContactInfo changed = fullDevice();
    changed.password = QStringLiteral("x.passwore");
    QVERIFY(exportTo(path, {changed}));
    QVERIFY(QFileInfo(path).lastModified() > before);
    QVERIFY(fileContent(path).contains("<P34>x.passwore</P34>"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{requestedName});
}

void TestProvisioningXml::failsWhereNoFileCanBeWritten()
{
    const QTemporaryDir folder;
    QVERIFY(!exportTo(folder.filePath(QStringLiteral("missing/")) + requestedName, {fullDevice()}));
    QVERIFY(QDir(folder.path()).mkdir(requestedName));
    QVERIFY(!exportTo(folder.filePath(requestedName), {fullDevice()}));
    QVERIFY(QDir(folder.filePath(requestedName)).isEmpty());
}

/// Two requests at a time for a device that is being edited, and a reader: long documents, so that
/// one that is written in place would be seen in pieces.
void TestProvisioningXml::readersGetWholeDocuments()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(requestedName);
    std::vector<ContactInfo> versions(2, fullDevice());
    versions[0].dial_plan = QString(200000, QLatin1Char('a'));
    versions[1].dial_plan = QString(300000, QLatin1Char('b'));
    std::vector<QByteArray> documents;
    for (const ContactInfo &version : versions) {
        QVERIFY(exportTo(path, {version}));
        documents.push_back(fileContent(path));
    }
    QVERIFY(documents[0].size() > 200000 && documents[1].size() > 300000);

    std::atomic<int> writing{2};
    std::atomic<int> failed{0};
    std::atomic<int> seen[2] = {{0}, {0}};
    const auto write = [&] {
        for (int i = 0; i < 30 || ((seen[0] < 5 || seen[1] < 5) && i < 5000); ++i) {
            if (!exportTo(path, {versions[static_cast<std::size_t>(i % 2)]}))
                ++failed;
        }
        --writing;
    };
    std::thread first(write);
    std::thread second(write);
    int torn = 0;
    while (writing > 0) {
        const QByteArray found = fileContent(path);
#ifdef Q_OS_WIN
        // There a reader keeps the writers out; none in life reads without a pause.
        QThread::msleep(5);
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

QTEST_GUILESS_MAIN(TestProvisioningXml)
#include "tst_provisioningxml.moc"
