#include "RawDatabase.h"
#include "TestDevices.h"
#include "model/ExportType.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "storage/DatabaseLayer.h"
#include "widgets/Modal.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <utility>

namespace {

struct SeenBox
{
    QString title;
    QString text;
    QStringList buttons;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool hasParent = false;
};

/// Stands for the user: remembers every box and presses a button of it.
class User
{
public:
    User()
    {
        Modal::setRunner([this](QDialog &dialog) {
            auto &box = static_cast<QMessageBox &>(dialog);
            SeenBox seen;
            seen.title = box.windowTitle();
            seen.text = box.text();
            seen.icon = box.icon();
            seen.hasParent = box.parent() != nullptr;
            QAbstractButton *pressed = nullptr;
            const QList<QAbstractButton *> buttons = box.buttons();
            for (QAbstractButton *button : buttons) {
                seen.buttons.append(button->text());
                if (button->text() == answer)
                    pressed = button;
            }
            boxes.append(seen);
            if (const auto act = std::exchange(meanwhile, {}))
                act();
            if (pressed)
                pressed->click();
            return 0;
        });
    }
    ~User() { Modal::setRunner({}); }
    User(const User &) = delete;
    User &operator=(const User &) = delete;

    QStringList titles() const
    {
        QStringList titles;
        for (const SeenBox &box : boxes)
            titles.append(box.title);
        return titles;
    }

    QList<SeenBox> boxes;
    QString answer;                  ///< text of the button to press
    std::function<void()> meanwhile; ///< happens once while the next box is open
};

/// The program's data side over one folder, as one run of the program has it.
struct Run
{
    explicit Run(const QString &folder)
        : dbOperator(folder + QLatin1Char('/'))
        , mgr(dbOperator, folder + QLatin1Char('/'))
        , changes(&mgr, &DataMgr::updateModel)
    {
    }

    QStringList macs() const
    {
        QStringList macs;
        for (int row = 0; row < mgr.devices().size(); ++row)
            macs.append(mgr.devices().at(row).info.mac);
        return macs;
    }
    QList<ContactInfo> contacts() const { return mgr.devices().snapshot().contacts(); }

    DBOperator dbOperator;
    DataMgr mgr;
    QSignalSpy changes;
};

QList<ContactInfo> stampedDevices(std::initializer_list<const char *> stamps)
{
    QList<ContactInfo> devices;
    for (const char *stamp : stamps)
        devices.append(stampedDevice(QLatin1String(stamp)));
    return devices;
}

const QString yes = QStringLiteral("Yes");
const QString no = QStringLiteral("No");
const QString saveError = QStringLiteral("Save Error");
const QString backupError = QStringLiteral("Backup Error");

constexpr char backupTitles[] =
    "MAC,Product Model,Primary Account,SIP Server,SIP User ID,Authentication ID,Password,"
    "Speech Coding1,Speech Coding2,Username,language,Random Port,Keep-Alive,IP,Subnet,Gateway IP,"
    "DNS Server 1,DNS Server 2,Enterprise Directory Path,Dial Plan,City,Company,Department,"
    "Proxy Server\r\n";

QByteArray stampedLine(const QByteArray &stamp)
{
    return stamp + ".mac," + stamp + ".product," + stamp + ".first_account," + stamp +
           ".sip_server," + stamp + ".sip_user_id," + stamp + ".auth_id," + stamp + ".password," +
           stamp + ".speech_coding1," + stamp + ".speech_coding2," + stamp + ".username," + stamp +
           ".language," + stamp + ".random_port," + stamp + ".keep_alive," + stamp + ".ip," +
           stamp + ".subnet," + stamp + ".gateway_ip," + stamp + ".dns_server1," + stamp +
           ".dns_server2," + stamp + ".phonebook_path," + stamp + ".dial_plan," + stamp + ".city," +
           stamp + ".company," + stamp + ".department," + stamp + ".proxy_server\r\n";
}

} // namespace

class TestDataMgr : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newDevicesGoToTheEnd();
    void duplicateAsksTheUser_data();
    void duplicateAsksTheUser();
    void looksAgainAfterAQuestion();
    void programEndsDuringAQuestion();
    void batchIsSavedOnce();
    void updatesByRunningNumber();
    void deletesAtRow_data();
    void deletesAtRow();
    void unchangedListIsNotWritten();
    void deleteAllKeepsABackup();
    void newestThirtyBackupsStay();
    void asksBeforeGoingOnWithoutBackup();
    void nextRunFindsTheList();
    void storedRowsAreNumberedAnew();
    void firstSaveKeepsRowsNeverLoaded_data();
    void firstSaveKeepsRowsNeverLoaded();
    void failedSaveIsToldOnceAndTriedAgain_data();
    void failedSaveIsToldOnceAndTriedAgain();
    void deleteThatFailsIsNoSave();
    void damagedStoreIsLeftAlone_data();
    void damagedStoreIsLeftAlone();
    void endOfProgramKeepsAnUnsavedList();
    void savingFromAnotherThread();
    void exportsOnAnotherThread();
    void cleanUpRemovesWhatIsItsOwn();

private:
    QString at(const QString &name) const { return m_folder->filePath(name); }
    QString databasePath() const { return at(QStringLiteral("phonebook.db")); }
    /// How the table differs from the list of this run.
    QString difference(const Run &run) const
    {
        return RawDatabase(databasePath()).difference(run.contacts());
    }
    /// Number of transactions that have changed the file.
    int writes() const { return fileContent(databasePath()).mid(24, 4).toHex().toInt(nullptr, 16); }
    QStringList backups() const
    {
        return QDir(at(QStringLiteral("backup"))).entryList(QDir::Files, QDir::Name);
    }
    QByteArray backup(const QString &name) const
    {
        return fileContent(at(QStringLiteral("backup/")) + name);
    }
    void store(const QList<ContactInfo> &devices)
    {
        Run run(m_folder->path());
        QVERIFY(run.mgr.openDatabase());
        run.mgr.addContacts(devices);
        QCOMPARE(difference(run), QString());
    }
    void blockBackups() const
    {
        QFile file(at(QStringLiteral("backup")));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<User> m_user;
};

void TestDataMgr::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_user = std::make_unique<User>();
}

void TestDataMgr::cleanup()
{
    m_user.reset();
    m_folder.reset();
}

void TestDataMgr::newDevicesGoToTheEnd()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    const QList<ContactInfo> devices = stampedDevices({"a", "b", "A"});
    for (const ContactInfo &device : devices) {
        run.mgr.insertContactNode(device);
        QCOMPARE(difference(run), QString());
    }
    run.mgr.insertContactNode(ContactInfo());
    QCOMPARE(run.macs(), QStringList({QStringLiteral("a.mac"), QStringLiteral("b.mac"),
                                      QStringLiteral("A.mac"), QString()}));
    QCOMPARE(run.mgr.devices().at(3).number, 4);
    QCOMPARE(difference(run), QString());
    QCOMPARE(run.changes.size(), 4);
    QVERIFY(m_user->boxes.isEmpty());
}

void TestDataMgr::duplicateAsksTheUser_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("replaced");
    QTest::newRow("yes") << yes << true;
    QTest::newRow("no") << no << false;
}

void TestDataMgr::duplicateAsksTheUser()
{
    QFETCH(QString, answer);
    QFETCH(bool, replaced);
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.addContacts(stampedDevices({"a", "b", "c"}));
    QList<ContactInfo> expected = run.contacts();
    const int writesBefore = writes();

    ContactInfo again = stampedDevice(QStringLiteral("new"));
    again.mac = QStringLiteral("b.mac");
    again.id = 99;
    m_user->answer = answer;
    run.mgr.insertContactNode(again);

    QCOMPARE(m_user->boxes.size(), 1);
    const SeenBox box = m_user->boxes.first();
    QCOMPARE(box.title, QStringLiteral("Replace action"));
    QCOMPARE(box.text, QStringLiteral("MAC:b.mac has already exist,do you want to replace it?"));
    QCOMPARE(box.buttons, QStringList({yes, no}));
    QVERIFY(!box.hasParent);

    if (replaced) {
        expected[1] = again;
        expected[1].id = 2;
    }
    QVERIFY(run.contacts() == expected);
    QCOMPARE(difference(run), QString());
    QCOMPARE(run.changes.size(), replaced ? 2 : 1);
    QCOMPARE(writes() > writesBefore, replaced);
}

/// The question runs an event loop, in which the list may change.
void TestDataMgr::looksAgainAfterAQuestion()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.addContacts(stampedDevices({"a", "b"}));
    m_user->answer = yes;
    m_user->meanwhile = [&] { run.mgr.deleteContactAt(0); };
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
    QCOMPARE(run.macs(), QStringList({QStringLiteral("b.mac"), QStringLiteral("a.mac")}));
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::programEndsDuringAQuestion()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.addContacts(stampedDevices({"a", "b"}));
    const QList<ContactInfo> before = run.contacts();
    const QByteArray file = fileContent(databasePath());
    m_user->answer = yes;
    m_user->meanwhile = [&] { run.mgr.close(); };
    run.mgr.addContacts(stampedDevices({"b", "c"}));
    QVERIFY(run.contacts() == before);
    QCOMPARE(m_user->boxes.size(), 1);

    blockBackups();
    QVERIFY(run.mgr.openDatabase());
    m_user->meanwhile = [&] { run.mgr.close(); };
    QVERIFY(!run.mgr.deleteAllContacts());
    QVERIFY(run.contacts() == before);
    QCOMPARE(m_user->boxes.size(), 2);
    QCOMPARE(fileContent(databasePath()), file);
}

void TestDataMgr::batchIsSavedOnce()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    const int writesBefore = writes();
    m_user->answer = no;
    // One of its MACs twice: asked about as well.
    run.mgr.addContacts(stampedDevices({"a", "b", "a", "c"}));
    QCOMPARE(m_user->titles(), QStringList{QStringLiteral("Replace action")});
    QCOMPARE(run.macs(), QStringList({QStringLiteral("a.mac"), QStringLiteral("b.mac"),
                                      QStringLiteral("c.mac")}));
    QCOMPARE(writes(), writesBefore + 1);
    QCOMPARE(run.changes.size(), 1);
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::updatesByRunningNumber()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.addContacts(stampedDevices({"a", "b", "c"}));
    run.changes.clear();

    ContactInfo edited = stampedDevice(QStringLiteral("other"));
    edited.id = 2;
    run.mgr.updateContact(edited);
    QVERIFY(run.contacts().at(1) == edited);
    QCOMPARE(run.macs(), QStringList({QStringLiteral("a.mac"), QStringLiteral("other.mac"),
                                      QStringLiteral("c.mac")}));
    QCOMPARE(run.mgr.devices().rowOfMac(QStringLiteral("b.mac")), -1);
    QCOMPARE(difference(run), QString());

    // An edit may give a device the MAC of another: nobody asks then.
    edited.mac = QStringLiteral("c.mac");
    run.mgr.updateContact(edited);
    QCOMPARE(difference(run), QString());
    QVERIFY(m_user->boxes.isEmpty());

    const QList<ContactInfo> before = run.contacts();
    edited.id = 4;
    run.mgr.updateContact(edited);
    QVERIFY(run.contacts() == before);
    QCOMPARE(run.changes.size(), 3);
}

void TestDataMgr::deletesAtRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("left");
    const QString a = QStringLiteral("a.mac");
    const QString b = QStringLiteral("b.mac");
    const QString c = QStringLiteral("c.mac");
    QTest::newRow("first") << 0 << QStringList{b, c};
    QTest::newRow("last") << 2 << QStringList{a, b};
    QTest::newRow("before the first") << -1 << QStringList{a, b, c};
    QTest::newRow("after the last") << 3 << QStringList{a, b, c};
}

void TestDataMgr::deletesAtRow()
{
    QFETCH(int, row);
    QFETCH(QStringList, left);
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.addContacts(stampedDevices({"a", "b", "c"}));
    run.changes.clear();
    run.mgr.deleteContactAt(row);
    QCOMPARE(run.macs(), left);
    QCOMPARE(run.changes.size(), 1);
    QCOMPARE(difference(run), QString());
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("d")));
    QCOMPARE(run.mgr.devices().at(left.size()).number, left.size() + 1);
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::unchangedListIsNotWritten()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.addContacts(stampedDevices({"a", "b"}));
    const int writesBefore = writes();
    QVERIFY(run.mgr.save());
    run.mgr.saveList();
    run.mgr.deleteContactAt(7);
    QCOMPARE(writes(), writesBefore);

    // Nor by a run that has only loaded it.
    run.mgr.close();
    Run next(m_folder->path());
    QVERIFY(next.mgr.openDatabase());
    QVERIFY(next.mgr.recoverPreviousData());
    QVERIFY(next.mgr.save());
    QCOMPARE(writes(), writesBefore);
}

void TestDataMgr::deleteAllKeepsABackup()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    QVERIFY(run.mgr.deleteAllContacts());
    QVERIFY(backups().isEmpty()); // there was nothing to keep

    ContactInfo hard = deviceWithMac(QStringLiteral("02:00:A7:A1:B2:C3"));
    hard.company = QStringLiteral("Smith, Jones");
    hard.department = QStringLiteral("the \"best\"");
    hard.city = QStringLiteral("one\r\ntwo\nthree");
    hard.username = QString::fromUtf8(" 北京 📞 ");
    run.mgr.addContacts(stampedDevices({"a"}) + QList<ContactInfo>{hard});
    run.changes.clear();
    const QString before = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QVERIFY(run.mgr.deleteAllContacts());
    const QString after = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));

    QCOMPARE(run.mgr.devices().size(), 0);
    QCOMPARE(difference(run), QString());
    QCOMPARE(run.changes.size(), 1);
    QVERIFY(m_user->boxes.isEmpty());
    QCOMPARE(backups().size(), 1);
    const QString name = backups().constFirst();
    QVERIFY(name >= QStringLiteral("devices-%1.csv").arg(before) &&
            name <= QStringLiteral("devices-%1.csv").arg(after));
    const QByteArray content = backup(name);
    QCOMPARE(content, backupTitles + stampedLine("a") +
                          "02:00:A7:A1:B2:C3,,,,,,,,, 北京 📞 ,,,,,,,,,,,"
                          "one two three,\"Smith, Jones\",\"the \"\"best\"\"\",\r\n");
    QCOMPARE(filePermissions(at(QStringLiteral("backup/")) + name),
             QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(filePermissions(at(QStringLiteral("backup"))),
             QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    // Two within one second are two files; numbers start again.
    for (int i = 0; i < 3; ++i) {
        run.mgr.insertContactNode(stampedDevice(QString::number(i)));
        QCOMPARE(run.mgr.devices().at(0).number, 1);
        QVERIFY(run.mgr.deleteAllContacts());
    }
    QCOMPARE(backups().size(), 4);
    QCOMPARE(backup(name), content);
}

void TestDataMgr::newestThirtyBackupsStay()
{
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("backup")));
    const auto make = [this](const QString &name, const QDateTime &time) {
        QFile file(at(QStringLiteral("backup/")) + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.setFileTime(time, QFileDevice::FileModificationTime);
    };
    const QDateTime start(QDate(2020, 1, 1), QTime(12, 0));
    const auto oldName = [](int i) { return QStringLiteral("devices-202001%1-120000.csv").arg(i); };
    for (int i = 10; i < 50; ++i)
        make(oldName(i), start.addDays(i));
    // The user's own files, and a backup from when the clock was wrong.
    make(QStringLiteral("devices-mine.csv"), start);
    make(QStringLiteral("notes.txt"), start);
    make(QStringLiteral("devices-20990101-000000.csv"), QDateTime::currentDateTime().addYears(9));

    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
    QVERIFY(run.mgr.deleteAllContacts());

    const QStringList left = backups();
    QCOMPARE(left.size(), 32);
    QVERIFY(left.contains(QStringLiteral("devices-mine.csv")));
    QVERIFY(left.contains(QStringLiteral("notes.txt")));
    QVERIFY(!left.contains(oldName(21)));
    QVERIFY(left.contains(oldName(22)));
    QVERIFY(left.contains(oldName(49)));
    int written = 0;
    for (const QString &name : left)
        written += backup(name) == backupTitles + stampedLine("a") ? 1 : 0;
    QCOMPARE(written, 1);
}

void TestDataMgr::asksBeforeGoingOnWithoutBackup()
{
    blockBackups();
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.addContacts(stampedDevices({"a", "b"}));
    run.changes.clear();

    m_user->answer = no;
    QVERIFY(!run.mgr.deleteAllContacts());
    QCOMPARE(run.mgr.devices().size(), 2);
    QCOMPARE(difference(run), QString());
    QCOMPARE(run.changes.size(), 0);
    QCOMPARE(m_user->titles(), QStringList{backupError});
    QCOMPARE(m_user->boxes.first().buttons, QStringList({yes, no}));

    m_user->answer.clear(); // closed without an answer
    QVERIFY(!run.mgr.deleteAllContacts());
    QCOMPARE(run.mgr.devices().size(), 2);

    m_user->answer = yes;
    QVERIFY(run.mgr.deleteAllContacts());
    QCOMPARE(run.mgr.devices().size(), 0);
    QCOMPARE(difference(run), QString());
    QVERIFY(QFileInfo(at(QStringLiteral("backup"))).isFile());
}

void TestDataMgr::nextRunFindsTheList()
{
    QList<ContactInfo> devices = stampedDevices({"c", "a", "b"});
    devices[1].company = QString::fromUtf8("北京 \"Müller\", it's 📞\r\n");
    store(devices);

    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    QCOMPARE(run.mgr.devices().size(), 0);
    bool busyDuringChange = false;
    connect(&run.mgr, &DataMgr::updateModel, this, [&] { busyDuringChange = run.mgr.isBusy(); });
    QVERIFY(run.mgr.recoverPreviousData());
    QVERIFY(busyDuringChange);
    QVERIFY(!run.mgr.isBusy());
    QCOMPARE(run.changes.size(), 1);
    for (int row = 0; row < devices.size(); ++row)
        devices[row].id = row + 1;
    QVERIFY(run.contacts() == devices);
    QVERIFY(m_user->boxes.isEmpty());
}

void TestDataMgr::storedRowsAreNumberedAnew()
{
    store(stampedDevices({"a", "b", "c"}));
    {
        const RawDatabase raw(databasePath());
        QVERIFY(raw.exec(QStringLiteral("update contact1 set id = id * 10")));
    }
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    QVERIFY(run.mgr.recoverPreviousData());
    QCOMPARE(run.mgr.devices().at(2).number, 3);
    QVERIFY(run.mgr.save());
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::firstSaveKeepsRowsNeverLoaded_data()
{
    QTest::addColumn<bool>("backupWorks");
    QTest::newRow("backup") << true;
    QTest::newRow("no backup possible") << false;
}

void TestDataMgr::firstSaveKeepsRowsNeverLoaded()
{
    QFETCH(bool, backupWorks);
    store(stampedDevices({"a", "b"}));
    if (!backupWorks)
        blockBackups();
    const QByteArray before = fileContent(databasePath());

    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    m_user->answer = no;
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("c")));
    QCOMPARE(run.macs(), QStringList{QStringLiteral("c.mac")});
    if (backupWorks) {
        QVERIFY(m_user->boxes.isEmpty());
        QCOMPARE(backups().size(), 1);
        QCOMPARE(backup(backups().constFirst()),
                 backupTitles + stampedLine("a") + stampedLine("b"));
        run.mgr.insertContactNode(stampedDevice(QStringLiteral("d")));
        QCOMPARE(backups().size(), 1);
    } else {
        QCOMPARE(m_user->titles(), QStringList({backupError, saveError}));
        QCOMPARE(fileContent(databasePath()), before);
        m_user->answer = yes;
        run.mgr.insertContactNode(stampedDevice(QStringLiteral("d")));
        QCOMPARE(m_user->titles(), QStringList({backupError, saveError, backupError}));
    }
    QCOMPARE(run.mgr.devices().size(), 2);
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::failedSaveIsToldOnceAndTriedAgain_data()
{
    QTest::addColumn<QString>("failure");
    QTest::newRow("locked") << QStringLiteral("locked");
    QTest::newRow("disk full") << QStringLiteral("full");
    QTest::newRow("no journal can be made") << QStringLiteral("journal");
}

void TestDataMgr::failedSaveIsToldOnceAndTriedAgain()
{
    QFETCH(QString, failure);
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.addContacts(stampedDevices({"a", "b"}));
    const QList<ContactInfo> stored = run.contacts();

    auto other = std::make_unique<RawDatabase>(databasePath());
    const QString journal = databasePath() + QLatin1String("-journal");
    const auto limitPages = [](const QString &pages) {
        QSqlQuery query(QSqlDatabase::database());
        QVERIFY(query.exec(QStringLiteral("pragma max_page_count = ") + pages));
    };
    const auto block = [&] {
        if (failure == QLatin1String("locked"))
            QVERIFY(other->exec(QStringLiteral("begin exclusive")));
        else if (failure == QLatin1String("full"))
            limitPages(QStringLiteral("1")); // SQLite takes the present size
        else
            QVERIFY(QDir().mkpath(journal + QLatin1String("/x")));
    };
    const auto unblock = [&] {
        if (failure == QLatin1String("locked"))
            QVERIFY(other->exec(QStringLiteral("rollback")));
        else if (failure == QLatin1String("full"))
            limitPages(QStringLiteral("1000000"));
        else
            QVERIFY(QDir(journal).removeRecursively());
    };

    block();
    run.changes.clear();
    QList<ContactInfo> many;
    for (int i = 0; i < 50; ++i)
        many.append(stampedDevice(QStringLiteral("n%1").arg(i)));
    run.mgr.addContacts(many);
    QCOMPARE(run.mgr.devices().size(), 52);
    QCOMPARE(run.changes.size(), 1);
    QCOMPARE(m_user->titles(), QStringList{saveError});
    const SeenBox box = m_user->boxes.first();
    QCOMPARE(box.icon, QMessageBox::Warning);
    QVERIFY2(box.text.contains(run.mgr.lastErrorText()) && !run.mgr.lastErrorText().isEmpty(),
             qPrintable(box.text));

    // Told once, however often it fails. (Each try at a locked file waits for two seconds.)
    if (failure != QLatin1String("locked")) {
        run.mgr.deleteContactAt(51);
        run.mgr.insertContactNode(many.last());
        QVERIFY(!run.mgr.save());
        QCOMPARE(m_user->boxes.size(), 1);
    }
    unblock();
    QCOMPARE(other->difference(stored), QString());

    run.mgr.deleteContactAt(0);
    QCOMPARE(run.mgr.devices().size(), 51);
    QCOMPARE(difference(run), QString());

    // A failure after that is news again.
    if (failure == QLatin1String("journal")) {
        block();
        run.mgr.deleteContactAt(0);
        QCOMPARE(m_user->boxes.size(), 2);
        unblock();
    }
}

void TestDataMgr::deleteThatFailsIsNoSave()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    run.mgr.addContacts(stampedDevices({"a"}));
    const RawDatabase raw(databasePath());
    QVERIFY(raw.exec(QStringLiteral("create trigger keep before delete on contact1 begin "
                                    "select raise(abort, 'rows stay'); end")));
    run.mgr.deleteContactAt(0);
    QCOMPARE(m_user->titles(), QStringList{saveError});
    QCOMPARE(raw.rows().size(), 1);
    QVERIFY(raw.exec(QStringLiteral("drop trigger keep")));
    QVERIFY(run.mgr.save());
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::damagedStoreIsLeftAlone_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<bool>("opens");
    QTest::newRow("no database") << QStringLiteral("garbage") << false;
    QTest::newRow("no table") << QStringLiteral("table") << false;
    QTest::newRow("cut off") << QStringLiteral("cut") << false;
    // The number of rows can still be read, the rows cannot.
    QTest::newRow("a page overwritten") << QStringLiteral("page") << true;
    // What was read and shown before it is taken back.
    QTest::newRow("a page far back overwritten") << QStringLiteral("far page") << true;
}

void TestDataMgr::damagedStoreIsLeftAlone()
{
    QFETCH(QString, damage);
    QFETCH(bool, opens);
    QList<ContactInfo> devices;
    const bool isFar = damage == QLatin1String("far page");
    for (int i = 0; i < (isFar ? 2600 : 200); ++i)
        devices.append(stampedDevice(QString::number(i)));
    store(devices);
    {
        QFile file(databasePath());
        QVERIFY(file.open(QIODevice::ReadWrite));
        if (damage == QLatin1String("garbage")) {
            file.write(QByteArray("garbage ").repeated(1000));
        } else if (damage == QLatin1String("cut")) {
            QVERIFY(file.resize(file.size() / 3));
        } else if (damage.endsWith(QLatin1String("page"))) {
            const int place =
                fileContent(databasePath()).indexOf(isFar ? "2500.sip_server" : "100.sip_server");
            QVERIFY(place > 0);
            QVERIFY(file.seek(qint64(place) / 4096 * 4096));
            file.write(QByteArray(4096, '\xff'));
        } else {
            const RawDatabase raw(databasePath());
            QVERIFY(raw.exec(QStringLiteral("alter table contact1 rename to contact2")));
        }
    }
    const QByteArray before = fileContent(databasePath());

    Run run(m_folder->path());
    const QSignalSpy begun(&run.mgr, &DataMgr::listBegun);
    QCOMPARE(run.mgr.openDatabase(), opens);
    QVERIFY(!run.mgr.recoverPreviousData());
    QCOMPARE(begun.value(0).value(0).toInt(), isFar ? devices.size() : 0);
    QCOMPARE(run.mgr.devices().size(), 0);
    QVERIFY(run.mgr.keepUnsavedList());
    QVERIFY(!run.mgr.lastErrorText().isEmpty());
    QVERIFY(!run.mgr.isStoreUsable());
    QVERIFY(!run.mgr.isBusy());
    QVERIFY(m_user->boxes.isEmpty()); // told by whoever opens it

    run.mgr.insertContactNode(stampedDevice(QStringLiteral("new")));
    run.mgr.deleteContactAt(0);
    run.mgr.addContacts(stampedDevices({"x", "y"}));
    QCOMPARE(run.mgr.devices().size(), 2);
    QCOMPARE(m_user->titles(), QStringList{saveError});
    run.mgr.close();
    QCOMPARE(fileContent(databasePath()), before);
}

void TestDataMgr::endOfProgramKeepsAnUnsavedList()
{
    store(stampedDevices({"old"}));
    QFile(databasePath()).resize(100);
    {
        Run run(m_folder->path());
        QVERIFY(!run.mgr.openDatabase());
        QVERIFY(run.mgr.keepUnsavedList()); // nothing was entered
        QVERIFY(m_user->boxes.isEmpty());
        run.mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
        m_user->boxes.clear();

        QVERIFY(run.mgr.keepUnsavedList());
        QCOMPARE(m_user->titles(), QStringList{saveError});
        QCOMPARE(backups().size(), 1);
        QCOMPARE(backup(backups().constFirst()), backupTitles + stampedLine("a"));
        QVERIFY2(m_user->boxes.first().text.contains(backups().constFirst()),
                 qPrintable(m_user->boxes.first().text));

        QVERIFY(QDir(at(QStringLiteral("backup"))).removeRecursively());
        blockBackups();
        m_user->answer = no;
        QVERIFY(!run.mgr.keepUnsavedList());
        m_user->answer = yes;
        QVERIFY(run.mgr.keepUnsavedList());
    }
    // What could not be saved before, but can be now, is just saved.
    QVERIFY(QFile::remove(databasePath()));
    m_user->boxes.clear();
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    const RawDatabase raw(databasePath());
    QVERIFY(raw.exec(QStringLiteral("create trigger stop before insert on contact1 begin "
                                    "select raise(abort, 'not now'); end")));
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
    QVERIFY(raw.exec(QStringLiteral("drop trigger stop")));
    QVERIFY(run.mgr.keepUnsavedList());
    QCOMPARE(difference(run), QString());
    QCOMPARE(m_user->boxes.size(), 1);
}

/// A connection thread never writes; it asks for another try when the last one failed.
void TestDataMgr::savingFromAnotherThread()
{
    store(stampedDevices({"old"}));
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    const auto saveElsewhere = [&] { std::thread([&] { run.mgr.saveList(); }).join(); };
    int writesBefore = writes();

    // The list of this run is not in the table, but no save has failed.
    saveElsewhere();
    QCoreApplication::processEvents();
    QCOMPARE(writes(), writesBefore);

    QVERIFY(run.mgr.recoverPreviousData());
    const RawDatabase raw(databasePath());
    QVERIFY(raw.exec(QStringLiteral("create trigger stop before insert on contact1 begin "
                                    "select raise(abort, 'not now'); end")));
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
    QCOMPARE(m_user->boxes.size(), 1);
    // A try that fails as well leaves the next one open, and says nothing.
    saveElsewhere();
    QCoreApplication::processEvents();
    QCOMPARE(m_user->boxes.size(), 1);
    QVERIFY(raw.exec(QStringLiteral("drop trigger stop")));

    writesBefore = writes();
    saveElsewhere();
    saveElsewhere();
    QCOMPARE(writes(), writesBefore);
    QTRY_COMPARE(difference(run), QString());
    QCOMPARE(writes(), writesBefore + 1);
    saveElsewhere();
    QCoreApplication::processEvents();
    QCOMPARE(writes(), writesBefore + 1);
}

void TestDataMgr::exportsOnAnotherThread()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    const QString name = QStringLiteral("cfg0200a7a1b2c3.xml");
    const auto version = [](int number) {
        ContactInfo device = stampedDevice(QStringLiteral("v%1").arg(number));
        device.mac = QStringLiteral("02:00:A7:A1:B2:C3");
        device.id = 2;
        return device;
    };
    run.mgr.addContacts(stampedDevices({"first"}) + QList<ContactInfo>{version(0)});
    QVERIFY(!run.mgr.exportDevices(99, QString(), name, m_folder->path()));
    QVERIFY(!run.mgr.exportDevices(DeskPhoneXml, QString(), name.toUpper(), m_folder->path()));

    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::atomic<int> written{0};
    std::thread phone([&] {
        while (!stop) {
            if (!run.mgr.exportDevices(DeskPhoneXml, QStringLiteral("UTF-8"), name,
                                       m_folder->path()))
                ++wrong;
            const QString document = QString::fromUtf8(fileContent(m_folder->filePath(name)));
            const QString stamp =
                document.section(QLatin1String(".sip_server"), 0, 0).section(QLatin1Char('>'), -1);
            if (document.count(QLatin1Char('>') + stamp + QLatin1Char('.')) != 12)
                ++wrong;
            ++written;
        }
    });
    for (int i = 1; i < 40 || written < 20; ++i)
        run.mgr.updateContact(version(i));
    stop = true;
    phone.join();
    QCOMPARE(wrong.load(), 0);
}

void TestDataMgr::cleanUpRemovesWhatIsItsOwn()
{
    Run run(m_folder->path());
    run.mgr.cleanUp();
    QVERIFY(QDir(m_folder->path()).isEmpty());

    for (const char *name : {"phonebook.db", "tmp.csv", "tmp1.csv", "tmp2.csv", "tmp3.csv",
                             "port.xml", "HTTPD/MACCFG/.hidden", "HTTPD/MACCFG/cfg.xml"}) {
        const QString path = at(QLatin1String(name));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const QTemporaryDir elsewhere;
    QVERIFY(QFile::link(elsewhere.path(), at(QStringLiteral("HTTPD/link"))));
    run.mgr.cleanUp();
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({QStringLiteral("port.xml"), QStringLiteral("tmp3.csv")}));
    QVERIFY(QFileInfo::exists(elsewhere.path()));
}

QTEST_MAIN(TestDataMgr)
#include "tst_datamgr.moc"
