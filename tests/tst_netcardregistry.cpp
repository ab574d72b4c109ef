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
    void initTestCase();
    void physical_data();
    void physical();

private:
    static void writeKey(const char *number, const char *instance, const char *device);
    QTemporaryDir m_folder;
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

void TestNetCardRegistry::initTestCase()
{
    QVERIFY(QDir::setCurrent(m_folder.path()));
    writeKey("0000", "{AA-0}", "PCI\\VEN_8086");
    writeKey("0001", "{AA-1}", "root\\vmware");
    writeKey("0007", "{AA-1}", "pci\\ven_10ec");
    writeKey("0010", "{AA-10}", "pci\\ven_10ec");
    writeKey("0011", "{AA-11}", "pci\\ven_10ec");
    writeKey("0012", "{AA-12}", "pci\\ven_10ec");
    writeKey("0005", "{AA-5}", "usb\\pci");
}

void TestNetCardRegistry::physical_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    const auto text = [](const char *s) { return QString::fromLatin1(s); };
    QTest::newRow("first key, upper case") << text("{AA-0}") << true;
    QTest::newRow("two keys, one of them PCI") << text("{AA-1}") << true;
    QTest::newRow("two-digit key") << text("{AA-10}") << true;
    QTest::newRow("last key") << text("{AA-11}") << true;
    QTest::newRow("beyond the last key") << text("{AA-12}") << false;
    QTest::newRow("not at the start") << text("{AA-5}") << false;
    QTest::newRow("other case of the name") << text("{aa-0}") << false;
    QTest::newRow("missing keys") << QString() << false;
}

void TestNetCardRegistry::physical()
{
    QFETCH(QString, name);
    QTEST(isPhysicalNetCard(name), "expected");
}

QTEST_GUILESS_MAIN(TestNetCardRegistry)
#include "tst_netcardregistry.moc"
