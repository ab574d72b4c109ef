#include "net/PhysicalNetCard.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

/// The registry's way to tell physical cards, on a registry made of files.
class TestNetCardRegistry : public QObject
{
    Q_OBJECT

private slots:
    void physical();

private:
    static void writeKey(const char *number, const char *instance, const char *device);
};

void TestNetCardRegistry::writeKey(const char *number, const char *instance, const char *device)
{
    QSettings key(QLatin1String("HKEY_LOCAL_MACHINE/SYSTEM/CurrentControlSet/Control/Class/"
                                "{4D36E972-E325-11CE-BFC1-08002BE10318}/") +
                      QLatin1String(number),
                  QSettings::NativeFormat);
    key.setValue(QStringLiteral("NetCfgInstanceId"), QLatin1String(instance));
    key.setValue(QStringLiteral("MatchingDeviceId"), QLatin1String(device));
}

void TestNetCardRegistry::physical()
{
    const QTemporaryDir folder;
    QVERIFY(QDir::setCurrent(folder.path()));
    writeKey("0000", "{AA-0}", "PCI\\VEN_8086");
    writeKey("0001", "{AA-1}", "root\\vmware");
    writeKey("0007", "{AA-1}", "pci\\ven_10ec");
    writeKey("0010", "{AA-10}", "pci\\ven_10ec");
    writeKey("0011", "{AA-11}", "pci\\ven_10ec");
    writeKey("0012", "{AA-12}", "pci\\ven_10ec");
    writeKey("0005", "{AA-5}", "usb\\pci");
    // The keys are looked through from 0000 to 0011.
    for (const char *name : {"{AA-0}", "{AA-1}", "{AA-10}", "{AA-11}"})
        QVERIFY2(isPhysicalNetCard(QLatin1String(name)), name);
    for (const char *name : {"{AA-12}", "{AA-5}", "{aa-0}", ""})
        QVERIFY2(!isPhysicalNetCard(QLatin1String(name)), name);
}

QTEST_GUILESS_MAIN(TestNetCardRegistry)
#include "tst_netcardregistry.moc"
