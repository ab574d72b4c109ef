// The way from the device list to the telephone, with nothing faked between: what telephones get
// while the list is being edited and saved.
#include "HttpPhone.h"
#include "TestDevices.h"
#include "net/HttpdPort.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "storage/DatabaseLayer.h"
#include "storage/DeviceBackup.h"
#include "widgets/Modal.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <memory>
#include <vector>

namespace {

constexpr int deviceCount = 20;
constexpr int clientCount = 200;

/// How often each asks.
const int requestsEach = qEnvironmentVariable("VL_REQUESTS_EACH", "20"_s).toInt();

/// Each field bears the same number, so that a document made of two versions shows.
ContactInfo deviceOfVersion(int device, int version)
{
    ContactInfo contact = stampedDevice("v%1"_s.arg(version));
    contact.mac = "02:00:A7:00:00:%1"_s.arg(device, 2, 10, QLatin1Char('0'));
    return contact;
}

QList<ContactInfo> devicesOfVersion(int version)
{
    QList<ContactInfo> devices;
    for (int device = 0; device < deviceCount; ++device)
        devices.append(deviceOfVersion(device, version));
    return devices;
}

QByteArray requestOf(int device, const QByteArray &agent)
{
    const QByteArray digits = QByteArray::number(device).rightJustified(2, '0');
    return request("cfg0200a70000" + digits + ".xml", agent);
}

/// The one version that all fields of a document come from; -1 when it is not whole.
int versionOf(const QByteArray &document)
{
    static const QRegularExpression stamp(">v(\\d+)\\."_s);
    if (!document.endsWith("</vl_provision>\n"))
        return -1;
    QStringList versions;
    for (auto matches = stamp.globalMatch(QString::fromUtf8(document)); matches.hasNext();)
        versions.append(matches.next().captured(1));
    return versions.size() == 12 && versions.count(versions.first()) == 12
               ? versions.first().toInt()
               : -1;
}

} // namespace

class TestProvisioning : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        const QString folder = m_folder->path() + QLatin1Char('/');
        m_dbOperator = std::make_unique<DBOperator>(folder);
        m_dataMgr = std::make_unique<DataMgr>(*m_dbOperator, folder);
        m_dataMgr->setSlice(-1);
        m_dataMgr->setRetryPause(0);
        QVERIFY(m_dataMgr->openDatabase());
        m_dataMgr->addContacts(devicesOfVersion(0));
        // The service as a user opens it, on a card of this machine's own and any port.
        QDir::setCurrent(m_folder->path());
        QVERIFY(writeHttpdPort("port.xml"_s, false, "0"_s));
        m_dataMgr->httpd().setInterfaceSource([] {
            return QList<NetInterface>{{"card"_s, true, {QHostAddress("192.0.2.1"_s)}}};
        });
        Modal::setRunner([](QDialog &) { return 1; });
        QVERIFY(m_dataMgr->startHttpService());
    }

    void cleanup()
    {
        m_dataMgr->close();
        m_dataMgr.reset();
        m_dbOperator.reset();
        Modal::setRunner({});
    }

    void telephonesGetWholeDocumentsWhileTheListIsEdited()
    {
        const quint16 port = m_dataMgr->serverPort();
        std::atomic<int> waiting{clientCount};
        std::atomic<int> wrong{0};
        std::atomic<int> newest{0};
        std::vector<std::thread> clients;
        clients.reserve(clientCount);
        for (int client = 0; client < clientCount; ++client) {
            clients.emplace_back([&, client] {
                const bool cordless = client % 2 == 1; // each document in both families
                const QByteArray bytes =
                    requestOf(client / 2 % deviceCount, cordless ? "DK" : "KTP");
                for (int i = 0; i < requestsEach; ++i) {
                    const QByteArray document = bodyOf(ask(port, bytes));
                    const int version = versionOf(document);
                    if (version < 0 || document.contains("<P4060>") != cordless)
                        ++wrong;
                    if (version > 0)
                        newest = version;
                }
                --waiting;
            });
        }
        // Edits, and imports in place of the list, until every client has its answer.
        int version = 0;
        while (waiting > 0) {
            ++version;
            if (version % 4 == 0) {
                QFile file(m_folder->filePath("list.csv"_s));
                QVERIFY(file.open(QIODevice::WriteOnly));
                file.write(DeviceBackup::csv(devicesOfVersion(version)));
                file.close();
                m_dataMgr->setImportFlag(true);
                m_dataMgr->importFile(file.fileName());
            } else {
                ContactInfo edited = deviceOfVersion(version % deviceCount, version);
                edited.id = version % deviceCount + 1;
                m_dataMgr->updateContact(edited);
            }
            for (int turn = 0; turn < 10; ++turn)
                QCoreApplication::processEvents();
        }
        for (std::thread &client : clients)
            client.join();
        QCOMPARE(wrong.load(), 0);
        QVERIFY2(newest > 0, "no edit met a request: the test shows nothing");
    }

    void answersNeedNoStoreThatWorks()
    {
        Modal::setRunner([](QDialog &) { return 0; });
        m_dbOperator->database()->closeDatabase();
        const auto fetch = [this](int device) {
            return bodyOf(ask(m_dataMgr->serverPort(), requestOf(device, "KTP")));
        };
        ContactInfo edited = deviceOfVersion(3, 7);
        edited.id = 4;
        m_dataMgr->updateContact(edited);
        QCOMPARE(versionOf(fetch(3)), 7);
        m_dataMgr->deleteContactAt(5);
        QCOMPARE(fetch(5), QByteArray());
        // The request asked for the save to be tried again; it is, once there is a store.
        QVERIFY(m_dbOperator->database()->openDatabase());
        QCOMPARE(versionOf(fetch(4)), 0);
        QTRY_COMPARE(m_dbOperator->load().at(3).city, "v7.city"_s);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DBOperator> m_dbOperator;
    std::unique_ptr<DataMgr> m_dataMgr;
};

QTEST_MAIN(TestProvisioning)
#include "tst_provisioning.moc"
