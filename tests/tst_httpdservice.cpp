#include "HttpPhone.h"
#include "net/HttpdPort.h"
#include "net/HttpdService.h"
#include "net/NetCardSelectDialog.h"
#include "widgets/Modal.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <tuple>
#include <vector>

namespace {

using Cards = QList<NetInterface>;

NetInterface card(const char *name, bool physical, const QStringList &addresses)
{
    NetInterface result{QString::fromLatin1(name), physical, {}};
    for (const QString &address : addresses)
        result.addresses.append(QHostAddress(address));
    return result;
}

Cards usualCards()
{
    return {card("lo", false, {QStringLiteral("127.0.0.1")}),
            card("eth0", true, {QStringLiteral("192.0.2.1")}),
            card("eth1", true, {QStringLiteral("192.0.2.2"), QStringLiteral("192.0.2.3")}),
            card("br0", false, {QStringLiteral("192.0.2.4")})};
}

QByteArray portXml(const QByteArray &useDefault, const QByteArray &port)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<configHttpdPort>\n    <useDefault>" +
           useDefault + "</useDefault>\n    <port>" + port + "</port>\n</configHttpdPort>\n";
}

void writePortFile(const QByteArray &text)
{
    QFile file(QStringLiteral("port.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

/// Listens on a port of all interfaces, so that nobody else can.
quint16 occupy(QTcpServer &server, quint16 port)
{
    // Where port 80 cannot be had (no privilege, or taken), the service cannot have it either.
    return server.listen(QHostAddress::AnyIPv4, port) ? server.serverPort() : port;
}

enum Port { None, Asked, Other };

struct Start
{
    const char *name;
    QByteArray setting; ///< port.xml; %1 is a port
    bool taken;         ///< that one, or the default one
    Cards cards;
    QString address; ///< empty: it does not start
    Port port;       ///< that is opened
    const char *box; ///< none when the user cancels
};

QList<Start> starts()
{
    static const char defaultTaken[] =
        "2 Open the default port 80 failed, please go to 'Options -> "
        "Configuration Httpd Port' to configure or use a random port.";
    static const char customTaken[] =
        "2 Open the custom port failed, the Httpd server will use a random port";
    static const char noNic[] = "3 Unable to start the server: Not avaliable physical NIC!";
    static const char noCard[] = "3 Unable to start the server: NIC device not found.";
    const QString second = QStringLiteral("192.0.2.2"); // of the last physical card
    const QByteArray custom = portXml("0", "%1");
    const QByteArray neither = portXml("2", "%1");
    const Cards cards = usualCards();
    const Cards onlyIp6 = {card("eth0", true, {QStringLiteral("fe80::1")})};
    return {
        {"custom", custom, false, cards, second, Asked, ""},
        {"custom, taken", custom, true, cards, second, Other, customTaken},
        {"unreadable", portXml("0", "none"), false, cards, second, Other, ""},
        {"default, taken", "", true, cards, second, Other, defaultTaken},
        {"neither default nor custom", neither, false, cards, second, None, ""},
        {"no physical", neither, false, cards.mid(3), QStringLiteral("192.0.2.4"), None, ""},
        {"cancelled", neither, false, cards, QString(), None, ""},
        {"no IPv4 address", neither, false, onlyIp6, QString(), None, noNic},
        {"no card", neither, false, Cards(), QString(), None, noCard},
    };
}

} // namespace

/// How the service starts, what it asks and tells, and how it ends wherever it is interrupted.
class TestHttpdService : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir::setCurrent(m_folder->path()));
        m_asked.clear();
        m_service = std::make_unique<HttpdService>(m_source, m_folder->path() + QLatin1Char('/'));
        m_service->setInterfaceSource(usualCards);
        Modal::setRunner([this](QDialog &dialog) { return answerDialog(dialog); });
    }

    void cleanup()
    {
        m_service.reset();
        Modal::setRunner({});
        QDir::setCurrent(QDir::rootPath());
    }

    void portFile()
    {
        const std::vector<std::tuple<QByteArray, int, int>> cases = {
            {portXml("0", "8080"), 0, 8080},
            {portXml("0", ""), 0, 80},
            {"<useDefault><port>7000</port></useDefault>", 1, 7000},
            {"<a><port><!-- 7000 -->7001</port></a>", 1, 80},
            {"<a><useDefault>0</useDefault><port>70", 0, 80},
            {"<a><useDefault>0</useDefault></b><port>7000</port></a>", 0, 80},
            {QByteArray("\0\xff\xfe<port>\0", 11), 1, 80},
            // Entities that unfold without end, and open elements.
            {"<!DOCTYPE a [<!ENTITY x \"1\"><!ENTITY y \"&y;&x;\">]><a><port>&y;</port></a>", 1,
             80},
            {QByteArray("<port>").repeated(200000), 1, 80},
        };
        for (const auto &[text, useDefault, port] : cases) {
            writePortFile(text);
            const HttpdPort setting = readHttpdPort(QStringLiteral("port.xml"));
            QVERIFY2(int(setting.policy) == useDefault && setting.port == port, text.left(200));
        }
    }

    void start_data()
    {
        QTest::addColumn<int>("row");
        for (int row = 0; row < starts().size(); ++row)
            QTest::newRow(starts().at(row).name) << row;
    }

    void start()
    {
        QFETCH(int, row);
        auto [name, setting, taken, cards, address, port, box] = starts().at(row);
        m_chooserResult = address.isEmpty() && *box == '\0' ? 0 : 1;
        m_service->setInterfaceSource([usable = cards] { return usable; });
        QTcpServer other;
        const quint16 asked = occupy(other, setting.isEmpty() ? 80 : 0);
        if (!taken)
            other.close();
        if (!setting.isEmpty())
            writePortFile(setting.replace("%1", QByteArray::number(asked)));
        QSignalSpy changed(m_service.get(), &HttpdService::httpdAddressChanged);
        QSignalSpy messages(m_service.get(), &HttpdService::httpdMsg);
        QCOMPARE(m_service->start(), !address.isEmpty());
        QCOMPARE(m_asked.count(QStringLiteral("cards")), cards.isEmpty() ? 0 : 1);
        m_asked.removeAll(QStringLiteral("cards"));
        QCOMPARE(m_asked.join(QLatin1Char('\n')), QLatin1String(box));
        QCOMPARE(m_service->addresses().value(0), address);
        const quint16 opened = m_service->port();
        QCOMPARE(opened == 0 ? None : opened == asked ? Asked : Other, port);
        if (address.isEmpty()) {
            QCOMPARE(changed.size(), 0);
            return;
        }
        const QString portText = QString::number(opened);
        QCOMPARE(changed, (QList<QList<QVariant>>{{address, portText}}));
        QVERIFY(!m_service->isVisible());
        QCOMPARE(m_service->findChild<QLabel *>()->text(),
                 QStringLiteral("The server is running on\n\nIP: %1\nport: %2\n\n")
                     .arg(address, portText));
        if (port != None) {
            QCOMPARE(bodyOf(ask(opened, request("cfg0a.xml", "DK"))),
                     FakeSource::document(CordlessXml, "cfg0a.xml"));
            QTRY_COMPARE(messages.size(), 1);
            QCOMPARE(messages[0][0].toString(),
                     QStringLiteral("One device request cfg.\nProduct:DK\nFileName:cfg0a.xml"));
        }
        m_service->show();
        m_service->stop();
        QVERIFY(!m_service->isVisible());
        QCOMPARE(m_service->addresses(), QStringList());
        QCOMPARE(m_service->port(), quint16(0));
        QVERIFY(!Phone(opened).isConnected());
    }

    void stopWhileAsking_data()
    {
        QTest::addColumn<bool>("inBox");
        QTest::addColumn<bool>("quits");
        QTest::newRow("chooser") << false << false;
        QTest::newRow("box") << true << false;
        QTest::newRow("chooser, the program quits") << false << true;
        QTest::newRow("box, the program quits") << true << true;
    }

    void stopWhileAsking()
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

private:
    int answerDialog(QDialog &dialog)
    {
        if (qobject_cast<NetCardSelectDialog *>(&dialog)) {
            m_asked.append(QStringLiteral("cards"));
            return m_chooserResult;
        }
        auto *box = qobject_cast<QMessageBox *>(&dialog);
        if (!box || box->windowTitle() != QLatin1String("Httpd Server") ||
            box->parent() != m_service.get() || box->standardButtons() != QMessageBox::Ok)
            qFatal("not one of the service's boxes");
        m_asked.append(QStringLiteral("%1 %2").arg(box->icon()).arg(box->text()));
        return QMessageBox::Ok;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    FakeSource m_source;
    std::unique_ptr<HttpdService> m_service;
    QStringList m_asked;     ///< icon and text of each message box, "cards" for the chooser
    int m_chooserResult = 1; ///< what the user does there
};

QTEST_MAIN(TestHttpdService)
#include "tst_httpdservice.moc"
