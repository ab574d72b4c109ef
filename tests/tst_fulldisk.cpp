#include "app/LanguageFile.h"
#include "app/OptionsFile.h"
#include "export/CSVOutlookExport.h"
#include "export/MacCfgExport.h"
#include "net/HttpdPort.h"
#include "storage/DeviceBackup.h"
#include "tests/DataSide.h"
#include "tests/FilePermissions.h"
#include "tests/RawDatabase.h"
#include "tests/SmallDisk.h"
#include "tests/TestDevices.h"

#include <QDirIterator>
#include <QTest>

#include <functional>

#include <sys/stat.h>

namespace {

constexpr int diskMebibytes = 4;
constexpr int littleRoom = 100 * 1024;
const QString diskFull = QStringLiteral("the disk is full");

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

/// Writes some `size` bytes below the folder. Returns why it could not, by its name where the
/// writer says no more than that.
using Writer = std::function<QString(const QString &folder, int size)>;

QString optionsOrLanguage(const QString &folder, int size)
{
    const QString path = folder + QLatin1String("settings.xml");
    return size < littleRoom ? updateOptionsFile(path, {false, size % 2 == 0, false}).reason()
                             : updateLanguageFile(path, QString(size, QLatin1Char('z'))).reason();
}

QString port(const QString &folder, int size)
{
    return writeHttpdPort(folder + QLatin1String("port.xml"), false,
                          QString(size, QLatin1Char('8')))
        .reason();
}

QString exported(const QString &folder, int size)
{
    QList<ContactInfo> devices = devicesWith(size, QString::number(size));
    CSVOutlookExport exporter;
    exporter.exportFile(QStringLiteral("UTF-8"), folder + QLatin1String("devices"), devices);
    return exporter.reason();
}

QString document(const QString &folder, int size)
{
    QList<ContactInfo> devices = devicesWith(0, QStringLiteral("02:00:a7:00:00:01"));
    devices.first().dial_plan = QString(size, QLatin1Char('x'));
    return MacCfgExport().exportFile(QString(), folder + QLatin1String("cfg0200a7000001.xml"),
                                     devices)
               ? QString()
               : diskFull;
}

QString backup(const QString &folder, int size)
{
    DeviceBackup backup(folder);
    const bool written = backup.write(devicesWith(size, QString::number(size)));
    return backup.lastPath().isEmpty() == !written ? backup.errorText()
                                                   : QStringLiteral("a path without a file");
}

QString databaseCopy(const QString &folder, int size)
{
    QTemporaryDir elsewhere;
    const QString path = elsewhere.filePath(QStringLiteral("phonebook.db"));
    QFile database(path);
    QFile journal(path + QLatin1String("-journal"));
    if (!database.open(QIODevice::WriteOnly) || !journal.open(QIODevice::WriteOnly))
        return QStringLiteral("no source");
    database.write(QByteArray(size, 'd'));
    journal.write(QByteArray(size, 'j'));
    database.close();
    journal.close();
    DeviceBackup backup(folder);
    backup.copyDatabase(path);
    return backup.errorText();
}

} // namespace

Q_DECLARE_METATYPE(Writer)

class TestFullDisk : public QObject
{
    Q_OBJECT

private slots:
    void leavesTheOldFile_data();
    void leavesTheOldFile();
    void keepsTheList_data();
    void keepsTheList();
    void givesTheReason_data();
    void givesTheReason();
};

void TestFullDisk::leavesTheOldFile_data()
{
    QTest::addColumn<Writer>("write");
    QTest::addColumn<int>("bytesLeft");
    QTest::addColumn<int>("size");
    const auto rows = [](const QByteArray &name, const Writer &write) {
        QTest::newRow(name + ", full") << write << 0 << 11;
        QTest::newRow(name + ", too large for the rest") << write << littleRoom << 4 * littleRoom;
    };
    rows("settings", optionsOrLanguage);
    rows("port", port);
    rows("export", exported);
    rows("document", document);
    rows("backup", backup);
    rows("copy of a database", databaseCopy);
}

void TestFullDisk::leavesTheOldFile()
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

void TestFullDisk::keepsTheList_data()
{
    QTest::addColumn<QString>("flow");
    QTest::addColumn<int>("bytesLeft");
    QTest::addColumn<QStringList>("boxes"); // with the answer "No" to every question
    const QStringList refused = {backupError};
    const QStringList unsaved = {saveError};
    QTest::newRow("Delete All, full") << QStringLiteral("delete") << 0 << refused;
    QTest::newRow("Delete All, little room") << QStringLiteral("delete") << littleRoom << refused;
    QTest::newRow("import, full") << QStringLiteral("import") << 0 << QStringList();
    QTest::newRow("import, little room") << QStringLiteral("import") << littleRoom << refused;
    QTest::newRow("batch, full") << QStringLiteral("batch") << 0 << unsaved;
    QTest::newRow("batch, little room") << QStringLiteral("batch") << littleRoom << unsaved;
    QTest::newRow("exit, full") << QStringLiteral("exit") << 0
                                << QStringList({saveError, saveError});
}

/// The list in the window is the old one or the new one, the file holds the old one, whole, and the
/// user has been told.
void TestFullDisk::keepsTheList()
{
    QFETCH(QString, flow);
    QFETCH(int, bytesLeft);
    QFETCH(QStringList, boxes);
    SmallDisk disk(diskMebibytes);
    if (!disk.isMounted())
        QSKIP("no file system can be mounted here");
    const QString folder = disk.folder().chopped(1);
    QTemporaryDir elsewhere;
    const QString list = elsewhere.filePath(QStringLiteral("list.csv"));
    QFile file(list);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(DeviceBackup::csv(stampedDevices("x y")));
    file.close();

    QList<ContactInfo> devices;
    for (int i = 0; i < 1500; ++i)
        devices.append(stampedDevice(QString::number(i)));
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
        ContactInfo large = stampedDevice(QStringLiteral("large"));
        large.company = QString(400 * 1024, QLatin1Char('x'));
        run.mgr.addContacts({large});
    }
    if (flow == QLatin1String("exit"))
        QVERIFY(!run.mgr.keepUnsavedList());
    QCOMPARE(user.titles(), boxes);
    const bool isUnchanged = flow == QLatin1String("delete") || flow == QLatin1String("import");
    QCOMPARE(run.mgr.devices().size() == devices.size(), isUnchanged);
    QVERIFY(QDir(folder + QLatin1String("/backup")).isEmpty());
    QString difference = RawDatabase(folder + QLatin1String("/phonebook.db")).difference(devices);
    QCOMPARE(difference, QString());

    // With room again, what is in the window is saved.
    disk.empty();
    QVERIFY(run.mgr.keepUnsavedList());
    difference = RawDatabase(folder + QLatin1String("/phonebook.db")).difference(run.contacts());
    QCOMPARE(difference, QString());
}

void TestFullDisk::givesTheReason_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const char *reason) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(reason);
    };
    row("link", "");
    row("folder", "a folder has the file's name");
    row("no folder/file", "the folder does not exist");
    row("pipe", "Invalid argument"); // what the system says
}

void TestFullDisk::givesTheReason()
{
    QFETCH(QString, name);
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("folder")));
    QCOMPARE(mkfifo(qPrintable(folder.filePath(QStringLiteral("pipe"))), 0600), 0);
    const QString target = folder.filePath(QStringLiteral("target"));
    QVERIFY(writeWholeFile(target, "old", Durability::Synced, Readers::OwnerOnly));
    QVERIFY(QFile::link(target, folder.filePath(QStringLiteral("link"))));
    QTEST(writeWholeFile(folder.filePath(name), "new").reason(), "reason");
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             (QStringList{QStringLiteral("folder"), QStringLiteral("link"), QStringLiteral("pipe"),
                          QStringLiteral("target")}));
    QCOMPARE(fileContent(target), QByteArray(name == QLatin1String("link") ? "new" : "old"));
    // As before: no new reader.
    QCOMPARE(filePermissions(target), QFile::ReadOwner | QFile::WriteOwner);
}

QTEST_MAIN(TestFullDisk)
#include "tst_fulldisk.moc"
