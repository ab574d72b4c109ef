#include "HttpPhone.h"
#include "net/HttpdPort.h"
#include "net/HttpdService.h"
#include "net/NetCardSelectDialog.h"
#include "widgets/Modal.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTimer>

/// How the service starts, what it asks and tells, and how it ends wherever it is interrupted.
class TestHttpdService : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void portFile_data();
    void portFile();
    void runningService();
    void portPolicy();
    void busyPort();
    void failures();
    void stopWhileAsking_data();
    void stopWhileAsking();

private:
    void writePortFile(const QByteArray &text);
    int answerDialog(QDialog &dialog);

    std::unique_ptr<QTemporaryDir> m_folder;
    FakeSource m_source;
    std::unique_ptr<HttpdService> m_service;
    QList<NetInterface> m_interfaces;
    QStringList m_boxes;     ///< icon and text of each message box
    int m_choosers = 0;      ///< how often the chooser was run
    int m_chooserResult = 1; ///< what the user does there
};

namespace {

NetInterface interface(const char *name, bool physical, const QStringList &addresses)
{
    NetInterface result{QString::fromLatin1(name), physical, {}};
    for (const QString &address : addresses)
        result.addresses.append(QHostAddress(address));
    return result;
}

QByteArray portXml(const QByteArray &useDefault, const QByteArray &port)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<configHttpdPort>\n    <useDefault>" +
           useDefault + "</useDefault>\n    <port>" + port + "</port>\n</configHttpdPort>\n";
}

/// Listens on a port of all interfaces, so that nobody else can.
quint16 occupy(QTcpServer &server, quint16 port)
{
    // Where port 80 cannot be had (no privilege, or taken), the service cannot have it either.
    return server.listen(QHostAddress::AnyIPv4, port) ? server.serverPort() : port;
}

quint16 freePort()
{
    QTcpServer server;
    return occupy(server, 0);
}

} // namespace

void TestHttpdService::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    m_boxes.clear();
    m_choosers = 0;
    m_chooserResult = 1;
    m_interfaces = {
        interface("lo", false, {QStringLiteral("127.0.0.1")}),
        interface("eth0", true, {QStringLiteral("192.0.2.1")}),
        interface("eth1", true, {QStringLiteral("192.0.2.2"), QStringLiteral("192.0.2.3")}),
        interface("br0", false, {QStringLiteral("192.0.2.4")})};
    m_service = std::make_unique<HttpdService>(m_source, m_folder->path() + QLatin1Char('/'));
    m_service->setInterfaceSource([this] { return m_interfaces; });
    Modal::setRunner([this](QDialog &dialog) { return answerDialog(dialog); });
}

void TestHttpdService::cleanup()
{
    m_service.reset();
    Modal::setRunner({});
    QDir::setCurrent(QDir::rootPath());
}

void TestHttpdService::writePortFile(const QByteArray &text)
{
    QFile file(QStringLiteral("port.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

int TestHttpdService::answerDialog(QDialog &dialog)
{
    if (qobject_cast<NetCardSelectDialog *>(&dialog)) {
        ++m_choosers;
        return m_chooserResult;
    }
    auto *box = qobject_cast<QMessageBox *>(&dialog);
    if (!box || box->windowTitle() != QLatin1String("Httpd Server") ||
        box->parent() != m_service.get() || box->standardButtons() != QMessageBox::Ok)
        qFatal("not one of the service's boxes");
    m_boxes.append(QStringLiteral("%1 %2").arg(box->icon()).arg(box->text()));
    return QMessageBox::Ok;
}

void TestHttpdService::portFile_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("useDefault");
    QTest::addColumn<int>("port");
    const auto row = [](const char *name, const QByteArray &text, int useDefault, int port) {
        QTest::newRow(name) << text << useDefault << port;
    };
    row("as written", portXml("0", "8080"), 0, 8080);
    row("empty port", portXml("0", ""), 0, 80);
    row("one inside the other", "<useDefault><port>7000</port></useDefault>", 1, 7000);
    row("comment instead of text", "<a><port><!-- 7000 -->7001</port></a>", 1, 80);
    row("truncated in a number", "<a><useDefault>0</useDefault><port>70", 0, 80);
    row("damaged later", "<a><useDefault>0</useDefault></b><port>7000</port></a>", 0, 80);
    row("binary", QByteArray("\0\xff\xfe<port>\0", 11), 1, 80);
    row("entities that unfold without end",
        "<!DOCTYPE a [<!ENTITY x \"1\"><!ENTITY y \"&y;&x;\">]><a><port>&y;</port></a>", 1, 80);
    row("open elements without end", QByteArray("<port>").repeated(200000), 1, 80);
}

void TestHttpdService::portFile()
{
    QFETCH(QByteArray, text);
    writePortFile(text);
    const HttpdPort setting = readHttpdPort(QStringLiteral("port.xml"));
    QTEST(setting.useDefault, "useDefault");
    QTEST(setting.port, "port");
}

void TestHttpdService::runningService()
{
    writePortFile(portXml("0", "none")); // unreadable number: a port of the system's choice
    QSignalSpy changed(m_service.get(), &HttpdService::httpdAddressChanged);
    QSignalSpy messages(m_service.get(), &HttpdService::httpdMsg);
    QVERIFY(m_service->start());

    QCOMPARE(m_boxes, QStringList());
    QCOMPARE(m_choosers, 1);
    // The last physical card comes first in the list, and so is the one that is checked.
    QCOMPARE(m_service->addresses(),
             (QStringList{QStringLiteral("192.0.2.2"), QStringLiteral("192.0.2.3")}));
    QVERIFY(m_service->port() != 0);
    const QString port = QString::number(m_service->port());
    QCOMPARE(changed, (QList<QList<QVariant>>{{QStringLiteral("192.0.2.2"), port}}));

    QVERIFY(!m_service->isVisible());
    QCOMPARE(m_service->findChild<QLabel *>()->text(),
             QStringLiteral("The server is running on\n\nIP: 192.0.2.2\nport: %1\n\n").arg(port));
    auto *okButton = m_service->findChild<QPushButton *>();
    m_service->show();
    okButton->click();
    QVERIFY(!m_service->isVisible());

    const QByteArray answer = ask(m_service->port(), request("cfg0a.xml", "DK"));
    QCOMPARE(bodyOf(answer), FakeSource::document(CordlessXml, QStringLiteral("cfg0a.xml")));
    QTRY_COMPARE(messages.size(), 1);
    QCOMPARE(messages[0][0].toString(),
             QStringLiteral("One device request cfg.\nProduct:DK\nFileName:cfg0a.xml"));

    m_service->show();
    m_service->stop();
    QVERIFY(!m_service->isVisible());
    QCOMPARE(m_service->addresses(), QStringList());
    QCOMPARE(m_service->port(), quint16(0));
    QVERIFY(!Phone(static_cast<quint16>(port.toInt())).isConnected());
}

void TestHttpdService::portPolicy()
{
    const quint16 port = freePort();
    const QByteArray text = QByteArray::number(port);
    // Also when only the low 16 bits are a port.
    for (const QByteArray &custom : {text, QByteArray::number(port + 65536)}) {
        writePortFile(portXml("0", custom));
        QVERIFY(m_service->start());
        QCOMPARE(m_service->port(), port);
        QVERIFY(Phone(port).isConnected());
        m_service->stop();
    }
    // Neither default nor custom, and no physical card.
    writePortFile(portXml("2", text));
    m_interfaces = {interface("br0", false, {QStringLiteral("192.0.2.4")}),
                    interface("br1", false, {QStringLiteral("192.0.2.5")})};
    QVERIFY(m_service->start());
    QCOMPARE(m_service->port(), quint16(0));
    QVERIFY(!Phone(port).isConnected());
    QCOMPARE(m_service->addresses(), QStringList{QStringLiteral("192.0.2.5")});
    QCOMPARE(m_boxes, QStringList());
}

void TestHttpdService::busyPort()
{
    for (const bool custom : {false, true}) {
        QTcpServer other;
        const quint16 taken = occupy(other, custom ? 0 : 80);
        if (custom)
            writePortFile(portXml("0", QByteArray::number(taken)));
        QVERIFY(m_service->start());
        QVERIFY(m_service->port() != 0 && m_service->port() != taken);
        QVERIFY(Phone(m_service->port()).isConnected());
        m_service->stop();
    }
    QCOMPARE(m_boxes,
             (QStringList{
                 QStringLiteral("2 Open the default port 80 failed, please go to 'Options -> "
                                "Configuration Httpd Port' to configure or use a random port."),
                 QStringLiteral("2 Open the custom port failed, the Httpd server will use a random "
                                "port")}));
}

void TestHttpdService::failures()
{
    QSignalSpy changed(m_service.get(), &HttpdService::httpdAddressChanged);
    m_chooserResult = 0; // cancelled
    QVERIFY(!m_service->start());
    QCOMPARE(m_boxes, QStringList());
    m_chooserResult = 1;
    m_interfaces = {interface("eth0", true, {QStringLiteral("fe80::1")})};
    QVERIFY(!m_service->start());
    m_interfaces.clear();
    QVERIFY(!m_service->start());
    QCOMPARE(
        m_boxes,
        (QStringList{QStringLiteral("3 Unable to start the server: Not avaliable physical NIC!"),
                     QStringLiteral("3 Unable to start the server: NIC device not found.")}));
    QCOMPARE(changed.size(), 0);
    QCOMPARE(m_service->addresses(), QStringList());
    QCOMPARE(m_service->port(), quint16(0));
}

void TestHttpdService::stopWhileAsking_data()
{
    QTest::addColumn<bool>("inBox");
    QTest::addColumn<bool>("quits");
    QTest::newRow("chooser") << false << false;
    QTest::newRow("box") << true << false;
    QTest::newRow("chooser, the program quits") << false << true;
    QTest::newRow("box, the program quits") << true << true;
}

void TestHttpdService::stopWhileAsking()
{
    QFETCH(bool, inBox);
    QFETCH(bool, quits);
    QTcpServer other;
    writePortFile(portXml("0", QByteArray::number(occupy(other, 0))));
    bool stopped = false;
    Modal::setRunner([&](QDialog &dialog) {
        if (inBox != (qobject_cast<QMessageBox *>(&dialog) != nullptr))
            return 1;
        QTimer::singleShot(0, this, [&] {
            stopped = dialog.isVisible();
            if (quits)
                QCoreApplication::quit();
            else
                m_service->stop();
        });
        return dialog.exec();
    });
    bool started = true;
    QTimer::singleShot(0, this, [&] {
        started = m_service->start();
        QCoreApplication::quit();
    });
    QApplication::exec();
    QVERIFY(!started);
    QVERIFY(stopped);
    QCOMPARE(m_service->port(), quint16(0));
    QCOMPARE(m_service->addresses(), QStringList());
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *widget : windows)
        QVERIFY(!widget->isVisible());

    // Nothing is left over that would hinder the next start.
    writePortFile(portXml("0", "0"));
    Modal::setRunner([](QDialog &) { return 1; });
    QVERIFY(m_service->start());
}

QTEST_MAIN(TestHttpdService)
#include "tst_httpdservice.moc"
