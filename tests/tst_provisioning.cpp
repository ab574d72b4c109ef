// The way from the device list to the telephone, with nothing faked between: what telephones get
// while the list is being edited and saved.
#include "HttpPhone.h"
#include "TestDevices.h"
#include "net/HttpdServer.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "storage/DatabaseLayer.h"
#include "widgets/Modal.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <atomic>
#include <memory>

namespace {

constexpr int deviceCount = 20;
constexpr int clientCount = 200;

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
    void init();
    void cleanup();

    void telephonesGetWholeDocumentsWhileTheListIsEdited();
    void answersNeedNoStoreThatWorks();

private:
    QByteArray fetch(int device, const QByteArray &agent)
    {
        const QByteArray name =
            "cfg" + macOf(device).remove(QLatin1Char(':')).toLower().toLatin1() + ".xml";
        return bodyOf(ask(m_server->serverPort(), request(name, agent)));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DBOperator> m_dbOperator;
    std::unique_ptr<DataMgr> m_dataMgr;
    std::unique_ptr<HttpdServer> m_server;
};

void TestProvisioning::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    const QString folder = m_folder->path() + QLatin1Char('/');
    m_dbOperator = std::make_unique<DBOperator>(folder);
    m_dataMgr = std::make_unique<DataMgr>(*m_dbOperator, folder);
    m_dataMgr->setSlice(-1);
    m_dataMgr->setRetryPause(0);
    QVERIFY(m_dataMgr->openDatabase());
    QList<ContactInfo> devices;
    for (int device = 0; device < deviceCount; ++device)
        devices.append(deviceOfVersion(device, 0));
    m_dataMgr->addContacts(devices);
    m_server = std::make_unique<HttpdServer>(*m_dataMgr, folder);
    QVERIFY(m_server->listen(QHostAddress::LocalHost, 0));
}

void TestProvisioning::cleanup()
{
    m_server.reset();
    m_dataMgr.reset();
    m_dbOperator.reset();
}

void TestProvisioning::telephonesGetWholeDocumentsWhileTheListIsEdited()
{
    const quint16 port = m_server->serverPort();
    std::atomic<int> waiting{clientCount};
    std::atomic<int> wrong{0};
    std::atomic<int> newest{0};
    std::vector<std::thread> clients;
    clients.reserve(clientCount);
    for (int client = 0; client < clientCount; ++client) {
        clients.emplace_back([&, client] {
            const bool cordless = client % 2 == 1;
            const QByteArray mac = macOf(client % deviceCount).remove(QLatin1Char(':')).toLatin1();
            const QByteArray bytes =
                request("cfg" + mac.toLower() + ".xml", cordless ? "DK715" : "KTP2135");
            Phone phone(port);
            phone.send(bytes);
            const QByteArray document = bodyOf(phone.receiveAll());
            const int version = versionOf(document);
            if (version < 0 || document.contains("<P4060>") != cordless)
                ++wrong;
            for (int seen = newest; seen < version && !newest.compare_exchange_weak(seen, version);)
                ;
            --waiting;
        });
    }
    // Accepts and edits in turn until every client has its answer. Connections are taken one in
    // each turn of the event loop.
    int version = 0;
    while (waiting > 0) {
        ContactInfo edited = deviceOfVersion(version % deviceCount, version + 1);
        edited.id = version % deviceCount + 1;
        m_dataMgr->updateContact(edited);
        ++version;
        for (int turn = 0; turn < 10; ++turn)
            QCoreApplication::processEvents();
    }
    for (std::thread &client : clients)
        client.join();
    QCOMPARE(wrong.load(), 0);
    QVERIFY2(newest > 0, "no edit met a request: the test shows nothing");
}

void TestProvisioning::answersNeedNoStoreThatWorks()
{
    Modal::setRunner([](QDialog &) { return 0; });
    m_dbOperator->database()->closeDatabase();
    ContactInfo edited = deviceOfVersion(3, 7);
    edited.id = 4;
    m_dataMgr->updateContact(edited);
    QCOMPARE(versionOf(fetch(3, "KTP")), 7);
    m_dataMgr->deleteContactAt(5);
    QCOMPARE(fetch(5, "KTP"), QByteArray());
    // The request asked for the save to be tried again; it is, once there is a store.
    QVERIFY(m_dbOperator->database()->openDatabase());
    QCOMPARE(versionOf(fetch(4, "KTP")), 0);
    QTRY_COMPARE(m_dbOperator->load().at(3).city, QStringLiteral("v7.city"));
    Modal::setRunner({});
}

QTEST_MAIN(TestProvisioning)
#include "tst_provisioning.moc"
