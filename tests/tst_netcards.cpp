#include "net/NetInterface.h"
#include "net/SysfsNetCard.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

/// Which of the machine's interfaces are offered, in which order, and which count as physical.
class TestNetCards : public QObject
{
    Q_OBJECT

private slots:
    void orderAndAddresses();
    void pciCards();
};

namespace {

NetInterface interface(const char *name, bool physical, const QStringList &addresses)
{
    NetInterface result{QString::fromLatin1(name), physical, {}};
    for (const QString &address : addresses)
        result.addresses.append(QHostAddress(address));
    return result;
}

QString text(const char *s)
{
    return QString::fromLatin1(s);
}

} // namespace

void TestNetCards::orderAndAddresses()
{
    const QList<NetCardInfo> cards = netCards({
        interface("lo", true, {text("127.0.0.1"), text("::1"), text("10.9.9.9")}),
        interface("first", true, {text("10.0.0.1"), text("fe80::1"), text("10.0.0.2")}),
        interface("tunnel", false, {text("10.1.0.1")}),
        interface("second", true, {text("fe80::2")}),
        interface("bridge", false, {text("0.0.0.0"), text("127.0.0.2")}),
    });
    QStringList seen;
    for (const NetCardInfo &card : cards)
        seen.append(card.name + QLatin1Char(card.isPhysical ? '+' : '-') +
                    card.ipList.join(QLatin1Char(',')));
    QCOMPARE(seen, (QStringList{text("second+"), text("first+10.0.0.1,10.0.0.2"),
                                text("tunnel-10.1.0.1"), text("bridge-127.0.0.2")}));
}

void TestNetCards::pciCards()
{
    const QTemporaryDir root;
    const auto device = [&](const char *path, const char *bus) {
        const QString folder = root.filePath(text(path));
        const QString busFolder = root.filePath(text("bus/") + text(bus));
        QVERIFY(QDir().mkpath(folder) && QDir().mkpath(busFolder));
        QVERIFY(QFile::link(busFolder, folder + text("/subsystem")));
    };
    const auto card = [&](const char *name, const char *path) {
        const QString folder = root.filePath(text("class/net/") + text(name));
        QVERIFY(QDir().mkpath(folder));
        if (path)
            QVERIFY(QFile::link(root.filePath(text(path)), folder + text("/device")));
    };
    device("devices/pci0/03.0", "pci");
    device("devices/pci0/03.0/virtio2", "virtio");
    device("devices/pci0/04.0", "pci");
    device("devices/pci0/04.0/usb1", "usb");
    device("devices/platform/mmio", "platform");
    device("devices/platform/mmio/virtio0", "virtio");
    card("enp3s0", "devices/pci0/03.0");
    card("eth0", "devices/pci0/03.0/virtio2");
    card("eth1", "devices/platform/mmio/virtio0");
    card("usb0", "devices/pci0/04.0/usb1");
    card("br0", nullptr);
    card("gone0", "devices/pci0/05.0");

    QVERIFY(isPciNetCard(text("enp3s0"), root.path()));
    QVERIFY(isPciNetCard(text("eth0"), root.path()));
    for (const char *name : {"eth1", "usb0", "br0", "gone0", "none0", ""})
        QVERIFY2(!isPciNetCard(text(name), root.path()), name);
}

QTEST_GUILESS_MAIN(TestNetCards)
#include "tst_netcards.moc"
