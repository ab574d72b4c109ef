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
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <memory>
#include <vector>

namespace {

constexpr int deviceCount = 20;
constexpr int clientCount = 200;

/// How often each asks: more, when somebody has the time to look for what happens seldom.
int requestsEach()
{
    bool given = false;
    const int count = qEnvironmentVariableIntValue("VL_REQUESTS_EACH", &given);
    return given ? count : 20;
}

QString macOf(int device)
{
    return QStringLiteral("02:00:A7:00:00:%1").arg(device, 2, 16, QLatin1Char('0')).toUpper();
}

/// A device each of whose fields bears the same number, so that a document made of two versions
/// shows.
ContactInfo deviceOfVersion(int device, int version)
{
    ContactInfo contact = stampedDevice(QStringLiteral("v%1").arg(version));
    contact.mac = macOf(device);
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
    const QString bare = macOf(device).remove(QLatin1Char(':')).toLower();
    return request("cfg" + bare.toLatin1() + ".xml", agent);
}

/// The one version that all fields of a document come from; -1 when it is not whole.
int versionOf(const QByteArray &document)
{
    static const QRegularExpression stamp(QStringLiteral(">v(\\d+)\\."));
    if (!document.endsWith("</vl_provision>\n"))
        return -1;
    int version = -1;
    int stamps = 0;
    auto matches = stamp.globalMatch(QString::fromUtf8(document));
    for (; matches.hasNext(); ++stamps) {
        const int found = matches.next().captured(1).toInt();
        if (stamps > 0 && found != version)
            return -1;
        version = found;
    }
    return stamps == 12 ? version : -1;
}

} // namespace

class TestProvisioning : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        const QString folder = m_folder->path() + QLatin1Char('/');
        m_dbOperator = std::make_unique<DBOperator>(folder);
        m_dataMgr = std::make_unique<DataMgr>(*m_dbOperator, folder);
        m_dataMgr->setSlice(-1);
        m_dataMgr->setRetryPause(0);
        QVERIFY(m_dataMgr->openDatabase());
        m_dataMgr->addContacts(devicesOfVersion(0));
        // The service as a user opens it, on a card of this machine's own.
        QDir::setCurrent(m_folder->path());
        QTcpServer free;
        QVERIFY(free.listen(QHostAddress::LocalHost, 0));
        QVERIFY(
            writeHttpdPort(QStringLiteral("port.xml"), false, QString::number(free.serverPort())));
        free.close();
        m_dataMgr->httpd().setInterfaceSource([] {
            return QList<NetInterface>{
                {QStringLiteral("card"), true, {QHostAddress(QStringLiteral("192.0.2.1"))}}};
        });
        Modal::setRunner([](QDialog &dialog) {
            dialog.accept();
            return dialog.result();
        });
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
                const bool cordless = client % 2 == 1;
                // Each document is asked for in both families.
                const QByteArray bytes =
                    requestOf(client / 2 % deviceCount, cordless ? "DK715" : "KTP2135");
                for (int i = 0; i < requestsEach(); ++i) {
                    const QByteArray document = bodyOf(ask(port, bytes));
                    const int version = versionOf(document);
                    if (version < 0 || document.contains("<P4060>") != cordless)
                        ++wrong;
                    for (int seen = newest;
                         seen < version && !newest.compare_exchange_weak(seen, version);)
                        ;
                }
                --waiting;
            });
        }
        // Edits, and imports in place of the list, until every client has its answer.
        int version = 0;
        while (waiting > 0) {
            ++version;
            if (version % 4 == 0) {
                importVersion(version);
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
        ContactInfo edited = deviceOfVersion(3, 7);
        edited.id = 4;
        m_dataMgr->updateContact(edited);
        QCOMPARE(versionOf(fetch(3)), 7);
        m_dataMgr->deleteContactAt(5);
        QCOMPARE(fetch(5), QByteArray());
        // The request asked for the save to be tried again; it is, once there is a store.
        QVERIFY(m_dbOperator->database()->openDatabase());
        QCOMPARE(versionOf(fetch(4)), 0);
        QTRY_COMPARE(m_dbOperator->load().at(3).city, QStringLiteral("v7.city"));
    }

private:
    QByteArray fetch(int device)
    {
        return bodyOf(ask(m_dataMgr->serverPort(), requestOf(device, "KTP")));
    }

    /// Lets the devices of this version take the place of the list.
    void importVersion(int version)
    {
        QFile file(m_folder->filePath(QStringLiteral("list.csv")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(DeviceBackup::csv(devicesOfVersion(version)));
        file.close();
        m_dataMgr->setImportFlag(true);
        m_dataMgr->importFile(file.fileName());
        QVERIFY(m_dataMgr->isSaved());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DBOperator> m_dbOperator;
    std::unique_ptr<DataMgr> m_dataMgr;
};

QTEST_MAIN(TestProvisioning)
#include "tst_provisioning.moc"
