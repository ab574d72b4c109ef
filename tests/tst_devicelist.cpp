#include "TestDevices.h"
#include "model/DeviceList.h"
#include "model/MacAddress.h"

#include <QRandomGenerator>
#include <QtTest>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

namespace {

QStringList macs(const DeviceListSnapshot &list)
{
    QStringList texts;
    for (int row = 0; row < list.size(); ++row)
        texts.append(list.at(row).info.mac);
    return texts;
}

} // namespace

class TestDeviceList : public QObject
{
    Q_OBJECT

private slots:
    void readsAddresses_data()
    {
        QTest::addColumn<QString>("imported");
        QTest::addColumn<bool>("isAddress");
        QTest::addColumn<QString>("bare");

        const auto pairs = "02:00:a7:0A:00:01"_s;
        const auto digits = "0200a70a0001"_s;
        for (const char *text :
             {"02:00:a7:0A:00:01", "02-00-a7-0A-00-01", "0200.a70A.0001", "0200a70A0001",
              " 02 00 a7 0A 00 01\xc2\xa0", "02:00:a7:0A:00:01 "})
            QTest::newRow(text) << pairs << true << digits;
        for (const char *text : {"", "n/a", "2E+11", "2:0:a7:A:0:1", "02:00:a7:0A:00",
                                 "02:00:a7:0A:00:01:02", "02:00:a7:0A:00:0g", "02/00/a7/0A/00/01"})
            QTest::newRow(text) << QString::fromLatin1(text) << false
                                << QString::fromLatin1(text).toLower().remove(QLatin1Char(':'));
    }

    void readsAddresses()
    {
        QFETCH(QString, imported);
        QFETCH(bool, isAddress);
        QFETCH(QString, bare);
        const QString text = QString::fromUtf8(QTest::currentDataTag());
        QCOMPARE(importedMac(text), imported);
        QCOMPARE(isMac(text), isAddress);
        QCOMPARE(bareMac(text), bare);
    }

    /// Random edits over few addresses, so that duplicates and look-alikes are common; after each,
    /// the list must answer as a plain search does, and no snapshot taken earlier may have moved.
    void agreesWithASimpleList()
    {
        const QStringList addresses = "A:B,a:b,ab,AC,ac,::,"_s.split(QLatin1Char(','));
        QRandomGenerator random(20240229);
        const auto anyMac = [&] { return addresses.at(random.bounded(addresses.size())); };

        DeviceList list;
        QStringList model;
        std::vector<std::pair<DeviceListSnapshot, QStringList>> taken;
        for (int step = 0; step < 3000; ++step) {
            const quint64 versionBefore = list.version();
            const int choice = random.bounded(20);
            if (model.isEmpty() || choice < 8) {
                model.append(anyMac());
                list.append(deviceWithMac(model.last()));
            } else if (choice < 13) {
                const int row = random.bounded(model.size());
                model[row] = anyMac();
                list.replaceAt(row, deviceWithMac(model.at(row)));
            } else if (choice < 18) {
                const int row = random.bounded(model.size());
                model.removeAt(row);
                list.removeAt(row);
            } else if (choice == 18) {
                model.clear();
                list.clear();
            } else {
                model = QStringList({anyMac(), anyMac(), anyMac()});
                QList<ContactInfo> contacts;
                for (const QString &mac : qAsConst(model))
                    contacts.append(deviceWithMac(mac));
                list.assign(contacts);
            }
            QVERIFY(list.version() > versionBefore);

            // Taken at some steps only: with no snapshot about, changes are made in place.
            if (random.bounded(3) > 0)
                continue;
            const DeviceListSnapshot now = list.snapshot();
            QCOMPARE(now.version(), list.version());
            QCOMPARE(macs(now), model);
            QStringList bare;
            for (int row = 0; row < model.size(); ++row) {
                QCOMPARE(now.at(row).number, row + 1);
                QCOMPARE(list.rowOfNumber(row + 1), row);
                bare.append(bareMac(model.at(row)));
            }
            for (const QString &mac : addresses) {
                QCOMPARE(list.rowOfMac(mac), model.indexOf(mac));
                QCOMPARE(now.rowOfMac(mac), model.indexOf(mac));
                QCOMPARE(now.rowOfBareMac(mac), bare.indexOf(mac));
            }
            taken.emplace_back(now, model);
        }
        for (const auto &[snapshot, expected] : taken) {
            QCOMPARE(macs(snapshot), expected);
            for (const QString &mac : addresses)
                QCOMPARE(snapshot.rowOfMac(mac), expected.indexOf(mac));
        }
    }

    /// Readers look at whole snapshots while the owner edits. Plain threads and atomics, which a
    /// thread sanitizer can follow.
    void snapshotsAreConsistentOnOtherThreads()
    {
        constexpr int readerCount = 3;
        DeviceList list;
        QRandomGenerator random(7);
        std::atomic<bool> stop{false};
        std::atomic<int> wrong{0};
        std::atomic<int> rounds{0};

        // One of them only glances, so that snapshots come to their end at every moment of an edit.
        const auto read = [&](bool glance) {
            quint64 lastVersion = 0;
            while (!stop) {
                const quint64 versionBefore = list.version();
                const DeviceListSnapshot snapshot = list.snapshot();
                bool right = snapshot.version() >= versionBefore && versionBefore >= lastVersion;
                lastVersion = snapshot.version();
                for (int row = glance ? snapshot.size() - 1 : 0; row >= 0 && row < snapshot.size();
                     ++row) {
                    const DeviceNode node = snapshot.at(row);
                    const int found = snapshot.rowOfMac(node.info.mac);
                    right = right && node.number == row + 1 && isStampedDevice(node.info) &&
                            found >= 0 && found <= row &&
                            snapshot.at(found).info.mac == node.info.mac &&
                            snapshot.rowOfBareMac(bareMac(node.info.mac)) <= found;
                }
                if (!right)
                    ++wrong;
                ++rounds;
            }
        };
        std::vector<std::thread> readers;
        readers.reserve(readerCount);
        for (int i = 0; i < readerCount; ++i)
            readers.emplace_back(read, i == 0);

        const auto anyDevice = [&] { return stampedDevice(QString::number(random.bounded(200))); };
        for (int edit = 0; edit < 4000 || rounds < 20 * readerCount; ++edit) {
            const int choice = random.bounded(100);
            if (list.size() < 5 || (choice < 45 && list.size() < 30))
                list.append(anyDevice());
            else if (choice < 70)
                list.replaceAt(random.bounded(list.size()), anyDevice());
            else if (choice < 98)
                list.removeAt(random.bounded(list.size()));
            else
                list.clear();
        }
        stop = true;
        for (std::thread &reader : readers)
            reader.join();
        QCOMPARE(wrong.load(), 0);
    }
};

QTEST_GUILESS_MAIN(TestDeviceList)
#include "tst_devicelist.moc"
