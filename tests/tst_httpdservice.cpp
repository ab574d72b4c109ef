#include "HttpPhone.h"
#include "TestDevices.h"
#include "User.h"
#include "net/HttpdService.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <optional>

namespace {

using Cards = QList<NetInterface>;

Cards usualCards()
{
    return {{"lo"_s, false, {QHostAddress("127.0.0.1"_s)}},
            {"eth0"_s, true, {QHostAddress("192.0.2.1"_s)}},
            {"eth1"_s, true, {QHostAddress("192.0.2.2"_s), QHostAddress("192.0.2.3"_s)}}};
}

void writePortFile(const QByteArray &useDefault, const QByteArray &port)
{
    writeFile("port.xml"_s, "<configHttpdPort><useDefault>" + useDefault + "</useDefault><port>" +
                                port + "</port></configHttpdPort>");
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
    const char *useDefault;
    QByteArray custom; ///< %1 is a port
    bool taken;        ///< the custom port, or the default one without it
    Cards cards;
    QString address; ///< empty: it does not start
    Port port;       ///< the port that is opened
    const char *box; ///< icon and text; none when the user cancels
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
    const QString second = "192.0.2.2"_s; // of the last physical card
    const Cards cards = usualCards();
    const Cards onlyIp6 = {{"eth0"_s, true, {QHostAddress("fe80::1"_s)}}};
    return {
        {"custom", "0", "%1", false, cards, second, Asked, ""},
        {"custom, taken", "0", "%1", true, cards, second, Other, customTaken},
        {"unreadable", "0", "none", false, cards, second, Other, ""},
        {"default, taken", "1", "", true, cards, second, Other, defaultTaken},
        {"neither default nor custom", "2", "%1", false, cards, second, None, ""},
        {"cancelled", "2", "%1", false, cards, QString(), None, ""},
        {"no IPv4 address", "2", "%1", false, onlyIp6, QString(), None, noNic},
        {"no card", "2", "%1", false, Cards(), QString(), None, noCard},
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
        m_user.emplace();
        m_service = std::make_unique<HttpdService>(m_source, m_folder->path() + QLatin1Char('/'));
        m_service->setInterfaceSource(usualCards);
    }

    void cleanup()
    {
        m_service.reset();
        m_user.reset();
        QDir::setCurrent(QDir::rootPath());
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
        auto [name, useDefault, custom, taken, cards, address, port, box] = starts().at(row);
        m_user->answers.append(address.isEmpty() && *box == '\0' ? "Cancel"_s : "OK"_s);
        m_service->setInterfaceSource([usable = cards] { return usable; });
        QTcpServer other;
        const quint16 asked = occupy(other, custom.isEmpty() ? 80 : 0);
        if (!taken)
            other.close();
        writePortFile(useDefault, custom.replace("%1", QByteArray::number(asked)));
        QSignalSpy changed(m_service.get(), &HttpdService::httpdAddressChanged);
        QSignalSpy messages(m_service.get(), &HttpdService::httpdMsg);
        QCOMPARE(m_service->start(), !address.isEmpty());
        const SeenBox last = m_user->boxes.last(); // after the chooser of cards
        QCOMPARE(last.text.isEmpty() ? ""_s : "%1 %2"_s.arg(last.icon).arg(last.text),
                 QLatin1String(box));
        QCOMPARE(m_service->addresses().value(0), address);
        const quint16 opened = m_service->port();
        QCOMPARE(opened == 0 ? None : opened == asked ? Asked : Other, port);
        if (address.isEmpty()) {
            QCOMPARE(changed.size(), 0);
            return;
        }
        QCOMPARE(changed, (QList<QList<QVariant>>{{address, QString::number(opened)}}));
        if (port != None) {
            QCOMPARE(bodyOf(ask(opened, request("cfg0a.xml", "DK"))),
                     FakeSource::document(CordlessXml, "cfg0a.xml"));
            QTRY_COMPARE(messages.size(), 1);
            QCOMPARE(messages[0][0].toString(),
                     "One device request cfg.\nProduct:DK\nFileName:cfg0a.xml"_s);
        }
        m_service->stop();
        QCOMPARE(m_service->addresses(), QStringList());
        QCOMPARE(m_service->port(), quint16(0));
        QTRY_VERIFY(!Phone(opened).isConnected()); // not every system frees a port at once
    }

    void stopWhileAsking_data()
    {
        QTest::addColumn<bool>("inBox");
        QTest::newRow("stopped in the chooser") << false;
        QTest::newRow("the program quits in the box") << true;
    }

    void stopWhileAsking()
    {
        QFETCH(bool, inBox);
        QTcpServer other;
        writePortFile("0", QByteArray::number(occupy(other, 0)));
        bool stopped = false;
        Modal::setRunner([&](QDialog &dialog) {
            if (inBox != (qobject_cast<QMessageBox *>(&dialog) != nullptr))
                return 1;
            QTimer::singleShot(0, this, [&] {
                stopped = dialog.isVisible();
                if (inBox)
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
        QVERIFY(stopped && !started);
        QCOMPARE(m_service->port(), quint16(0));
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (const QWidget *widget : windows)
            QVERIFY(!widget->isVisible());

        // Nothing is left over that would hinder the next start.
        writePortFile("0", "0");
        m_user.emplace().answers.append("OK"_s);
        QVERIFY(m_service->start());
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    FakeSource m_source;
    std::unique_ptr<HttpdService> m_service;
    std::optional<User> m_user;
};

QTEST_MAIN(TestHttpdService)
#include "tst_httpdservice.moc"
