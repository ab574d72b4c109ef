#include "Literal.h"
#include "net/NetInterface.h"
#include "net/PhysicalNetCard.h"
#include "net/SysfsNetCard.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>
#include <vector>

namespace {

QString text(const char *s)
{
    return QString::fromLatin1(s);
}

} // namespace

/// Which of the machine's interfaces are offered, in which order, and which count as physical.
class TestNetCards : public QObject
{
    Q_OBJECT

private slots:
    void orderAndAddresses()
    {
        const auto ip = [](const char *address) { return QHostAddress(text(address)); };
        const QList<NetCardInfo> cards = netCards({
            {"lo"_s, true, {ip("127.0.0.1"), ip("::1"), ip("10.9.9.9")}},
            {"first"_s, true, {ip("10.0.0.1"), ip("fe80::1"), ip("10.0.0.2")}},
            {"tunnel"_s, false, {ip("10.1.0.1")}},
            {"second"_s, true, {ip("fe80::2")}},
            {"bridge"_s, false, {ip("0.0.0.0"), ip("127.0.0.2")}},
        });
        QString seen;
        for (const NetCardInfo &card : cards)
            seen += card.name + text(card.isPhysical ? "+" : "-") + card.ipList.join(","_s) + " "_s;
        QCOMPARE(seen, "second+ first+10.0.0.1,10.0.0.2 tunnel-10.1.0.1 bridge-127.0.0.2 "_s);
    }

    void pciCards()
    {
        const QTemporaryDir root;
        const auto link = [&](const QString &target, const QString &name) {
            QVERIFY(QDir().mkpath(root.filePath(target)) &&
                    QDir().mkpath(QFileInfo(root.filePath(name)).path()));
            QVERIFY(QFile::link(root.filePath(target), root.filePath(name)));
        };
        const std::vector<std::tuple<const char *, const char *, const char *>> nodes = {
            {"pci0/03.0", "pci", "enp3s0"},        {"pci0/03.0/virtio2", "virtio", "eth0"},
            {"pci0/04.0", "pci", "two"},           {"pci0/04.0/usb1", "usb", "usb0"},
            {"platform/mmio", "platform", "mmio"}, {"platform/mmio/virtio0", "virtio", "eth1"},
            {"pci0/05.0", "pci", "gone0"},
        };
        for (const auto &[path, bus, name] : nodes) {
            link("bus/"_s + text(bus), "devices/"_s + text(path) + "/subsystem"_s);
            link("devices/"_s + text(path), "class/net/"_s + text(name) + "/device"_s);
        }
        QVERIFY(QDir(root.filePath("devices/pci0/05.0"_s)).removeRecursively());
        QVERIFY(QDir().mkpath(root.filePath("class/net/br0"_s)));

        QVERIFY(isPciNetCard("enp3s0"_s, root.path()) && isPciNetCard("eth0"_s, root.path()));
        for (const char *name : {"eth1", "usb0", "br0", "gone0", "none0", ""})
            QVERIFY2(!isPciNetCard(text(name), root.path()), name);
    }

    /// The source for Windows works on Qt's settings alone: on this system a tree of files stands
    /// for the registry.
    void registryCards()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir::setCurrent(folder.path()));
        const auto write = [](const char *number, const char *instance, const char *device) {
            QSettings key(QLatin1String("HKEY_LOCAL_MACHINE/SYSTEM/CurrentControlSet/Control/Class/"
                                        "{4D36E972-E325-11CE-BFC1-08002BE10318}/") +
                              text(number),
                          QSettings::NativeFormat);
            key.setValue("NetCfgInstanceId"_s, text(instance));
            key.setValue("MatchingDeviceId"_s, text(device));
        };
        write("0000", "{AA-0}", "PCI\\VEN_8086");
        write("0001", "{AA-1}", "root\\vmware");
        write("0005", "{AA-5}", "usb\\pci");
        for (const char *number : {"0007", "0010", "0011", "0012"})
            write(number, number, "pci\\ven_10ec");
        // The search goes from key 0000 to key 0011.
        for (const char *name : {"{AA-0}", "0007", "0010", "0011"})
            QVERIFY2(isPhysicalNetCard(text(name)), name);
        for (const char *name : {"0012", "{AA-1}", "{AA-5}", "{aa-0}", ""})
            QVERIFY2(!isPhysicalNetCard(text(name)), name);
    }
};

QTEST_GUILESS_MAIN(TestNetCards)
#include "tst_netcards.moc"
