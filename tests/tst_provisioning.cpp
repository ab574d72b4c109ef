// The way from the device list to the phone, with nothing faked between: what phones get while the
// list is being edited and saved.
#include "DataSide.h"
#include "HttpPhone.h"
#include "net/HttpdPort.h"
#include "storage/DatabaseLayer.h"
#include "storage/DeviceBackup.h"

#include <QRegularExpression>
#include <QTest>

#include <atomic>
#include <vector>

namespace {

constexpr int deviceCount = 20;
constexpr int clientCount = 200;

/// The number of requests of each client.
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

class TestProvisioning : public QObject, protected DataSide
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        m_run.emplace(folder(), "");
        m_run->mgr.setRetryPause(0);
        m_run->mgr.addContacts(devicesOfVersion(0));
        // The service as a user opens it, on a card of this machine's own and any port.
        QDir::setCurrent(folder());
        QVERIFY(writeHttpdPort("port.xml"_s, false, "0"_s));
        m_run->mgr.httpd().setInterfaceSource([] {
            return QList<NetInterface>{{"card"_s, true, {QHostAddress("192.0.2.1"_s)}}};
        });
        m_user->answers = QStringList("OK"_s);
        QVERIFY(m_run->mgr.startHttpService());
    }

    void cleanup()
    {
        m_run->mgr.close();
        m_run.reset();
    }

    void phonesGetWholeDocumentsWhileTheListIsEdited()
    {
        const quint16 port = m_run->mgr.serverPort();
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
                m_run->mgr.setImportFlag(true);
                QVERIFY(m_run->import(
                    writeFile(at("list.csv"_s), DeviceBackup::csv(devicesOfVersion(version)))));
            } else {
                ContactInfo edited = deviceOfVersion(version % deviceCount, version);
                edited.id = version % deviceCount + 1;
                m_run->mgr.updateContact(edited);
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
        m_user->answers.clear();
        m_run->dbOperator.database()->closeDatabase();
        const auto fetch = [this](int device) {
            return bodyOf(ask(m_run->mgr.serverPort(), requestOf(device, "KTP")));
        };
        ContactInfo edited = deviceOfVersion(3, 7);
        edited.id = 4;
        m_run->mgr.updateContact(edited);
        QCOMPARE(versionOf(fetch(3)), 7);
        m_run->mgr.deleteContactAt(5);
        QCOMPARE(fetch(5), QByteArray());
        // The request asked for the save to be tried again; it is, once there is a store.
        QVERIFY(m_run->dbOperator.database()->openDatabase());
        QCOMPARE(versionOf(fetch(4)), 0);
        QTRY_COMPARE(m_run->dbOperator.load().at(3).city, "v7.city"_s);
        // With the list go the documents that were made from it.
        const QDir documents(at("HTTPD/MACCFG"_s));
        QVERIFY(!documents.isEmpty() && m_run->deleteAll());
        QTRY_VERIFY(documents.isEmpty());
    }

private:
    std::optional<Run> m_run;
};

QTEST_MAIN(TestProvisioning)
#include "tst_provisioning.moc"
