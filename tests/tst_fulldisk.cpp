#include "app/LanguageFile.h"
#include "export/CSVOutlookExport.h"
#include "export/MacCfgExport.h"
#include "net/HttpdPort.h"
#include "storage/DeviceBackup.h"
#include "tests/DataSide.h"
#include "tests/SmallDisk.h"

#include <QDirIterator>

#include <sys/stat.h>

namespace {

constexpr int diskMebibytes = 4;
constexpr int littleRoom = 100 * 1024;
const QString diskFull = "the disk is full"_s;

QMap<QString, QByteArray> filesIn(const QString &folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator entries(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        files.insert(path, fileContent(path));
    }
    return files;
}

QList<ContactInfo> devicesWith(int size, const QString &mac)
{
    QList<ContactInfo> devices;
    do {
        devices.append(stampedDevice(QString::number(devices.size())));
        devices.last().mac = mac;
    } while (devices.size() * 250 < size);
    return devices;
}

/// Writes about `size` bytes below the folder. Returns the reason of a failure, or the name of a
/// writer that gives no reason.
using Writer = std::function<QString(const QString &folder, int size)>;

QString exported(const QString &folder, int size)
{
    QList<ContactInfo> devices = devicesWith(size, QString::number(size));
    CSVOutlookExport exporter;
    exporter.exportFile("UTF-8"_s, folder + "devices"_s, devices);
    return exporter.reason();
}

QString document(const QString &folder, int size)
{
    QList<ContactInfo> devices = devicesWith(0, "02:00:a7:00:00:01"_s);
    devices.first().dial_plan = QString(size, QLatin1Char('x'));
    const QString path = folder + "cfg0200a7000001.xml"_s;
    return MacCfgExport().exportFile({}, path, devices) ? QString() : diskFull;
}

QString backup(const QString &folder, int size)
{
    DeviceBackup backup(folder);
    const bool written = backup.write(devicesWith(size, QString::number(size)));
    return backup.lastPath().isEmpty() == !written ? backup.errorText() : "no such file"_s;
}

QString databaseCopy(const QString &folder, int size)
{
    const QTemporaryDir elsewhere;
    const QString path = writeFile(elsewhere.filePath("phonebook.db"_s), QByteArray(size, 'd'));
    writeFile(path + "-journal"_s, QByteArray(size, 'j'));
    DeviceBackup backup(folder);
    backup.copyDatabase(path);
    return backup.errorText();
}

QString databaseMoved(const QString &folder, int size)
{
    const QTemporaryDir elsewhere;
    const QString path = writeFile(elsewhere.filePath("phonebook.db"_s), QByteArray(size, 'd'));
    writeFile(path + "-journal"_s, "j");
    DeviceBackup backup(folder);
    const int stay = backup.putAside(path) ? 0 : 2;
    return QDir(elsewhere.path()).count() == uint(stay) + 2 ? backup.errorText() : "lost"_s;
}

} // namespace

Q_DECLARE_METATYPE(Writer)

class TestFullDisk : public QObject
{
    Q_OBJECT

private slots:
    void leavesTheOldFile_data()
    {
        QTest::addColumn<Writer>("write");
        QTest::addColumn<int>("bytesLeft");
        QTest::addColumn<int>("size");
        const auto rows = [](const QByteArray &name, const Writer &write) {
            QTest::newRow(name + ", full") << write << 0 << 11;
            QTest::newRow(name + ", too large for the rest")
                << write << littleRoom << 4 * littleRoom;
        };
        rows("language", [](const QString &folder, int size) {
            return updateLanguageFile(folder + "x.xml"_s, QString(size, QLatin1Char('z'))).reason();
        });
        rows("port", [](const QString &folder, int size) {
            const QString port(size, QLatin1Char('8'));
            return writeHttpdPort(folder + "port.xml"_s, false, port).reason();
        });
        rows("export", exported);
        rows("document", document);
        rows("backup", backup);
        rows("copy of a database", databaseCopy);
        rows("move of a database", databaseMoved);
    }

    void leavesTheOldFile()
    {
        QFETCH(Writer, write);
        QFETCH(int, bytesLeft);
        QFETCH(int, size);
        SmallDisk disk(diskMebibytes);
        if (!disk.isMounted())
            QSKIP("no file system of its own can be mounted here");
        QCOMPARE(write(disk.folder(), 10), QString());
        const auto before = filesIn(disk.folder());
        QVERIFY(!before.isEmpty());

        QVERIFY(disk.fill(bytesLeft));
        QCOMPARE(write(disk.folder(), size), diskFull);
        QVERIFY(filesIn(disk.folder()) == before);

        disk.empty();
        QCOMPARE(write(disk.folder(), size), QString());
        QVERIFY(filesIn(disk.folder()) != before);
    }

    void keepsTheList_data()
    {
        QTest::addColumn<QString>("flow");
        QTest::addColumn<int>("bytesLeft");
        QTest::addColumn<QStringList>("boxes"); // with the answer "No" to every question
        const auto row = [](const char *flow, int bytesLeft, const QStringList &boxes) {
            QTest::addRow("%s, %d left", flow, bytesLeft)
                << QString::fromLatin1(flow) << bytesLeft << boxes;
        };
        row("delete", 0, {"Backup Error"_s});
        row("delete", littleRoom, {"Backup Error"_s});
        row("import", 0, {});
        row("import", littleRoom, {"Backup Error"_s});
        row("batch", 0, {"Save Error"_s});
        row("batch", littleRoom, {"Save Error"_s});
        row("long batch", 0, {"Save Error"_s}); // a long list is written in another way
        row("long batch", littleRoom, {"Save Error"_s});
        row("exit", 0, {"Save Error"_s, "Save Error"_s});
    }

    /// The list in the window is the old one or the new one, the file holds the old one, whole, and
    /// the user has been told.
    void keepsTheList()
    {
        QFETCH(QString, flow);
        QFETCH(int, bytesLeft);
        QFETCH(QStringList, boxes);
        SmallDisk disk(diskMebibytes);
        if (!disk.isMounted())
            QSKIP("no file system can be mounted here");
        const QString folder = disk.folder().chopped(1);
        const QTemporaryDir elsewhere;
        const QString list =
            writeFile(elsewhere.filePath("list.csv"_s), DeviceBackup::csv(stampedDevices("x y")));
        const QList<ContactInfo> devices =
            manyDevices(flow == QLatin1String("long batch") ? 2500 : 1500);
        User user;
        user.answers = QStringList{no};
        Run run(folder, "");
        run.mgr.addContacts(devices);
        QVERIFY(run.mgr.isSaved());
        QVERIFY(disk.fill(bytesLeft));

        if (flow == QLatin1String("delete")) {
            QVERIFY(!run.deleteAll());
        } else if (flow == QLatin1String("import")) {
            run.mgr.setImportFlag(true);
            QVERIFY(!run.import(list));
        } else {
            ContactInfo large = stampedDevice("large"_s);
            large.company = QString(400 * 1024, QLatin1Char('x'));
            run.mgr.addContacts({large});
        }
        if (flow == QLatin1String("exit"))
            QVERIFY(!run.mgr.keepUnsavedList());
        QCOMPARE(user.takeTitles(), boxes);
        const bool isUnchanged = flow == QLatin1String("delete") || flow == QLatin1String("import");
        QCOMPARE(run.mgr.devices().size() == devices.size(), isUnchanged);
        QVERIFY(QDir(folder + QLatin1String("/backup")).isEmpty());
        const RawDatabase raw(folder + "/phonebook.db"_s);
        QCOMPARE(raw.difference(devices), QString());

        // With room again, what is in the window is saved.
        disk.empty();
        QVERIFY(run.mgr.keepUnsavedList());
        QCOMPARE(raw.difference(run.contacts()), QString());
    }

    void givesTheReason_data()
    {
        QTest::addColumn<QString>("reason");
        QTest::newRow("link") << QString();
        QTest::newRow("folder") << "a folder has the file's name"_s;
        QTest::newRow("no folder/file") << "the folder does not exist"_s;
        QTest::newRow("pipe") << "Invalid argument"_s; // what the system says
    }

    void givesTheReason()
    {
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir("folder"_s));
        QCOMPARE(mkfifo(qPrintable(folder.filePath("pipe"_s)), 0600), 0);
        const QString target = folder.filePath("target"_s);
        QVERIFY(writeWholeFile(target, "old", Durability::Synced, Readers::OwnerOnly));
        QVERIFY(QFile::link(target, folder.filePath("link"_s)));
        QTEST(writeWholeFile(folder.filePath(name), "new").reason(), "reason");
        QCOMPARE(
            QDir(folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
            QStringList({"folder"_s, "link"_s, "pipe"_s, "target"_s}));
        QCOMPARE(fileContent(target), QByteArray(name == QLatin1String("link") ? "new" : "old"));
        // The access rights are unchanged.
        QCOMPARE(filePermissions(target), QFile::ReadOwner | QFile::WriteOwner);
    }
};

QTEST_MAIN(TestFullDisk)
#include "tst_fulldisk.moc"
