#include "net/NetInterface.h"
#include "net/PhysicalNetCard.h"
#include "net/SysfsNetCard.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

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

/// Which of the machine's interfaces are offered, in which order, and which count as physical.
class TestNetCards : public QObject
{
    Q_OBJECT

private slots:
    void orderAndAddresses()
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

    void pciCards()
    {
        const QTemporaryDir root;
        const auto link = [&](const QString &target, const QString &name) {
            QVERIFY(QDir().mkpath(root.filePath(target)) &&
                    QDir().mkpath(QFileInfo(root.filePath(name)).path()));
            QVERIFY(QFile::link(root.filePath(target), root.filePath(name)));
        };
        for (const auto &[path, bus] :
             {std::pair("pci0/03.0", "pci"), std::pair("pci0/03.0/virtio2", "virtio"),
              std::pair("pci0/04.0", "pci"), std::pair("pci0/04.0/usb1", "usb"),
              std::pair("platform/mmio", "platform"), std::pair("platform/mmio/virtio0", "virtio")})
            link(text("bus/") + text(bus), text("devices/") + text(path) + text("/subsystem"));
        for (const auto &[name, path] :
             {std::pair("enp3s0", "pci0/03.0"), std::pair("eth0", "pci0/03.0/virtio2"),
              std::pair("eth1", "platform/mmio/virtio0"), std::pair("usb0", "pci0/04.0/usb1"),
              std::pair("gone0", "pci0/05.0")})
            link(text("devices/") + text(path), text("class/net/") + text(name) + text("/device"));
        QVERIFY(QDir(root.filePath(text("devices/pci0/05.0"))).removeRecursively());
        QVERIFY(QDir().mkpath(root.filePath(text("class/net/br0"))));

        QVERIFY(isPciNetCard(text("enp3s0"), root.path()));
        QVERIFY(isPciNetCard(text("eth0"), root.path()));
        for (const char *name : {"eth1", "usb0", "br0", "gone0", "none0", ""})
            QVERIFY2(!isPciNetCard(text(name), root.path()), name);
    }

    /// The registry's way: its source works on Qt's settings alone, and on this system a tree of
    /// files plays the registry.
    void registryCards()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir::setCurrent(folder.path()));
        const auto write = [](const char *number, const char *instance, const char *device) {
            QSettings key(QLatin1String("HKEY_LOCAL_MACHINE/SYSTEM/CurrentControlSet/Control/Class/"
                                        "{4D36E972-E325-11CE-BFC1-08002BE10318}/") +
                              text(number),
                          QSettings::NativeFormat);
            key.setValue(text("NetCfgInstanceId"), text(instance));
            key.setValue(text("MatchingDeviceId"), text(device));
        };
        write("0000", "{AA-0}", "PCI\\VEN_8086");
        write("0001", "{AA-1}", "root\\vmware");
        write("0005", "{AA-5}", "usb\\pci");
        for (const auto &[number, instance] :
             {std::pair("0007", "{AA-1}"), std::pair("0010", "{AA-10}"),
              std::pair("0011", "{AA-11}"), std::pair("0012", "{AA-12}")})
            write(number, instance, "pci\\ven_10ec");
        // The keys are looked through from 0000 to 0011.
        for (const char *name : {"{AA-0}", "{AA-1}", "{AA-10}", "{AA-11}"})
            QVERIFY2(isPhysicalNetCard(text(name)), name);
        for (const char *name : {"{AA-12}", "{AA-5}", "{aa-0}", ""})
            QVERIFY2(!isPhysicalNetCard(text(name)), name);
    }
};

QTEST_GUILESS_MAIN(TestNetCards)
#include "tst_netcards.moc"
