#include "DataSide.h"
#include "RawDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>
#include <thread>

using Change = std::function<void(Run &)>;
Q_DECLARE_METATYPE(Change)

class TestDataMgr : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void duplicateAsksTheUser();
    void programEndsDuringAQuestion();
    void batchIsSavedOnce();
    void updatesByRunningNumber();
    void deletesAtRow();
    void changesAreTakenBack_data();
    void changesAreTakenBack();
    void fiftyStepsAreKept();
    void unchangedListIsNotWritten();
    void deleteAllKeepsABackup();
    void newestThirtyBackupsStay();
    void databasesInTheBackups();
    void asksBeforeGoingOnWithoutBackup();
    void aRefusedDeletionStaysRefused();
    void nextRunFindsTheListNumberedAnew();
    void firstSaveKeepsRowsNeverLoaded_data();
    void firstSaveKeepsRowsNeverLoaded();
    void failedSaveIsToldOnceAndTriedAgain();
    void deleteThatFailsIsNoSave();
    void damagedStoreIsLeftAlone_data();
    void damagedStoreIsLeftAlone();
    void endOfProgramKeepsAnUnsavedList();
    void savingFromAnotherThread();
    void cleanUpRemovesWhatIsItsOwn();
    void changesWaitForALongJob_data();
    void changesWaitForALongJob();
    void anEditDuringAQuestionWaits();
    void rowsOfOthersAreKept_data();
    void rowsOfOthersAreKept();
    void aHeldDatabaseIsWaitedFor();
    void aSecondProgramIsKeptOff();

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
    static void writeFile(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
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

void TestDataMgr::duplicateAsksTheUser()
{
    Run run(m_folder->path(), "a b c");
    const QList<ContactInfo> before = run.contacts();
    const int writesBefore = writes();
    ContactInfo again = stampedDevice(QStringLiteral("new"));
    again.mac = QStringLiteral("b.mac");
    again.id = 99;
    m_user->answers = QStringList{no};
    run.mgr.insertContactNode(again);
    QVERIFY(run.contacts() == before);
    QCOMPARE(writes(), writesBefore);
    QCOMPARE(run.changes.size(), 0);

    m_user->answers = QStringList{yes};
    run.mgr.insertContactNode(again);
    again.id = 2;
    QVERIFY(run.contacts().at(1) == again);
    QCOMPARE(difference(run), QString());
    QCOMPARE(run.changes.size(), 1);

    // The question runs an event loop. What comes meanwhile waits for its answer.
    m_user->meanwhile = [&] { run.mgr.deleteContactAt(0); };
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
    QCOMPARE(run.stamps(), QStringLiteral("a b c"));
    QTRY_COMPARE(run.stamps(), QStringLiteral("b c"));
    QCOMPARE(difference(run), QString());
    QCOMPARE(m_user->boxes.size(), 3);
}

void TestDataMgr::programEndsDuringAQuestion()
{
    Run run(m_folder->path(), "a b");
    const QList<ContactInfo> before = run.contacts();
    const QByteArray file = fileContent(databasePath());
    m_user->answers = QStringList{yes};
    m_user->meanwhile = [&] { run.mgr.close(); };
    run.mgr.addContacts(stampedDevices("b c"));
    QVERIFY(run.contacts() == before);
    QCOMPARE(m_user->boxes.size(), 1);

    blockBackups();
    QVERIFY(run.mgr.openDatabase());
    m_user->meanwhile = [&] { run.mgr.close(); };
    QVERIFY(!run.deleteAll());
    QVERIFY(run.contacts() == before);
    QCOMPARE(m_user->boxes.size(), 2);
    QCOMPARE(fileContent(databasePath()), file);
}

void TestDataMgr::batchIsSavedOnce()
{
    Run run(m_folder->path(), "");
    const int writesBefore = writes();
    m_user->answers = QStringList{no};
    // One of its MACs twice: asked about as well.
    run.mgr.addContacts(stampedDevices("a b a c"));
    QCOMPARE(m_user->titles(), QStringList{replaceAction});
    QCOMPARE(run.stamps(), QStringLiteral("a b c"));
    QCOMPARE(writes(), writesBefore + 1);
    QCOMPARE(run.changes.size(), 1);
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::updatesByRunningNumber()
{
    Run run(m_folder->path(), "a b c");

    ContactInfo edited = stampedDevice(QStringLiteral("other"));
    edited.id = 2;
    run.mgr.updateContact(edited);
    QVERIFY(run.contacts().at(1) == edited);
    QCOMPARE(run.stamps(), QStringLiteral("a other c"));
    QCOMPARE(run.mgr.devices().rowOfMac(QStringLiteral("b.mac")), -1);
    QCOMPARE(difference(run), QString());

    // The device has moved since its dialog was opened.
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("d")));
    run.mgr.deleteContactAt(0);
    edited.id = 3;
    edited.mac = QStringLiteral("moved.mac");
    run.mgr.updateContact(edited, QStringLiteral("c.mac"));
    QCOMPARE(run.stamps(), QStringLiteral("other moved d"));
    run.mgr.updateContact(edited, QStringLiteral("gone.mac"));
    QCOMPARE(run.stamps(), QStringLiteral("other moved d"));
    run.mgr.deleteAllContacts();
    run.mgr.addContacts(stampedDevices("a other c"));
    edited = run.contacts().at(1);

    // The MAC of another device: asks as a new device does, and replaces that one.
    edited.mac = QStringLiteral("c.mac");
    const QList<ContactInfo> kept = run.contacts();
    m_user->answers = QStringList{no, yes};
    run.mgr.updateContact(edited);
    QVERIFY(run.contacts() == kept);
    run.mgr.updateContact(edited);
    QCOMPARE(run.stamps(), QStringLiteral("a c"));
    QCOMPARE(run.contacts().at(1).city, edited.city);
    QCOMPARE(difference(run), QString());
    QCOMPARE(m_user->titles(), QStringList({replaceAction, replaceAction}));

    const QList<ContactInfo> before = run.contacts();
    edited.id = 4;
    run.mgr.updateContact(edited);
    QVERIFY(run.contacts() == before);
}

void TestDataMgr::deletesAtRow()
{
    Run run(m_folder->path(), "a b c d");
    const QList<std::pair<int, QString>> deletions = {{-1, QStringLiteral("a b c d")},
                                                      {4, QStringLiteral("a b c d")},
                                                      {3, QStringLiteral("a b c")},
                                                      {0, QStringLiteral("b c")}};
    for (const auto &[row, left] : deletions) {
        run.changes.clear();
        run.mgr.deleteContactAt(row);
        QCOMPARE(run.stamps(), left);
        QCOMPARE(run.changes.size(), 1);
        QCOMPARE(difference(run), QString());
    }
    run.mgr.insertContactNode(ContactInfo());
    QCOMPARE(run.mgr.devices().at(2).number, 3);
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::changesAreTakenBack_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("stamps");
    const auto row = [](const char *name, const char *stamps, const Change &change) {
        QTest::newRow(name) << change << QString::fromLatin1(stamps);
    };
    row("new", "a b c d e",
        [](Run &run) { run.mgr.insertContactNode(stampedDevice(QStringLiteral("e"))); });
    row("batch", "a b c d e f", [](Run &run) { run.mgr.addContacts(stampedDevices("e f")); });
    row("edit", "a x c d", [](Run &run) {
        ContactInfo edited = stampedDevice(QStringLiteral("x"));
        edited.id = 2;
        run.mgr.updateContact(edited);
    });
    row("edit that takes another's MAC", "a d c", [](Run &run) {
        ContactInfo edited = stampedDevice(QStringLiteral("d"));
        edited.id = 2;
        run.mgr.updateContact(edited);
    });
    row("delete", "a c d", [](Run &run) { run.mgr.deleteContactAt(1); });
    row("delete all", "", [](Run &run) { run.mgr.deleteAllContacts(); });
}

void TestDataMgr::changesAreTakenBack()
{
    QFETCH(Change, change);
    QFETCH(QString, stamps);
    m_user->answers = QStringList{yes};
    Run run(m_folder->path(), "a b c d");
    const QList<ContactInfo> before = run.contacts();
    change(run);
    QCOMPARE(run.stamps(), stamps);
    const QList<ContactInfo> after = run.contacts();

    run.mgr.undo();
    QCOMPARE(run.contacts(), before);
    QCOMPARE(difference(run), QString());
    for (int row = 0; row < before.size(); ++row)
        QCOMPARE(run.mgr.devices().rowOfMac(before.at(row).mac), row);

    run.mgr.redo();
    QCOMPARE(run.contacts(), after);
    QCOMPARE(difference(run), QString());
    run.mgr.redo(); // nothing is left to be made again
    QCOMPARE(run.contacts(), after);
}

void TestDataMgr::fiftyStepsAreKept()
{
    Run run(m_folder->path());
    QVERIFY(run.mgr.openDatabase());
    for (int i = 0; i < 50; ++i)
        run.mgr.insertContactNode(stampedDevice(QString::number(i)));
    for (int i = 50; i > 0; --i) {
        QCOMPARE(run.mgr.devices().size(), i);
        run.mgr.undo();
    }
    QVERIFY(run.mgr.devices().size() == 0 && !run.mgr.history().toUndo());
    run.mgr.redo();
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("x")));
    QVERIFY(!run.mgr.history().toRedo());
    QCOMPARE(run.stamps(), QStringLiteral("0 x"));

    // A key that comes while another change is being made means neither.
    run.mgr.setSlice(0);
    run.mgr.addContacts(thousandDevices(QStringLiteral("y")));
    run.mgr.undo();
    QTRY_VERIFY(run.mgr.worker().isIdle());
    QCOMPARE(run.mgr.devices().size(), 1002);
}

void TestDataMgr::unchangedListIsNotWritten()
{
    Run run(m_folder->path(), "a b");
    const int writesBefore = writes();
    QVERIFY(run.save());
    run.mgr.saveList();
    run.mgr.deleteContactAt(7);
    QCOMPARE(writes(), writesBefore);

    // Nor by a run that has only loaded it.
    run.mgr.close();
    Run next(m_folder->path(), "");
    QVERIFY(next.load());
    QVERIFY(next.save());
    QCOMPARE(writes(), writesBefore);
}

void TestDataMgr::deleteAllKeepsABackup()
{
    Run run(m_folder->path(), "");
    QVERIFY(run.deleteAll());
    QVERIFY(backups().isEmpty()); // there was nothing to keep

    ContactInfo hard = deviceWithMac(QStringLiteral("02:00:A7:A1:B2:C3"));
    hard.company = QStringLiteral("Smith, Jones");
    hard.department = QStringLiteral("the \"best\"");
    hard.city = QStringLiteral("one\r\ntwo\nthree");
    hard.username = QString::fromUtf8(" 北京 📞 ");
    run.mgr.addContacts(stampedDevices("a") + QList<ContactInfo>{hard});
    run.changes.clear();
    const QString before = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QVERIFY(run.deleteAll());
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
    QCOMPARE(content, backupText(stampedDevices("a")) +
                          "02:00:A7:A1:B2:C3,,,,,,,,, 北京 📞 ,,,,,,,,,,,"
                          "one two three,\"Smith, Jones\",\"the \"\"best\"\"\",\r\n");
    QCOMPARE(filePermissions(at(QStringLiteral("backup/")) + name),
             QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(filePermissions(at(QStringLiteral("backup"))),
             QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    // Two within one second are two files, the same devices one; numbers start again.
    for (int i = 0; i < 3; ++i) {
        run.mgr.insertContactNode(stampedDevice(QString::number(i % 2)));
        QCOMPARE(run.mgr.devices().at(0).number, 1);
        QVERIFY(run.deleteAll());
    }
    QCOMPARE(backups().size(), 3);
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

    Run run(m_folder->path(), "");
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
    QVERIFY(run.deleteAll());

    const QStringList left = backups();
    QCOMPARE(left.size(), 32);
    QVERIFY(left.contains(QStringLiteral("devices-mine.csv")));
    QVERIFY(left.contains(QStringLiteral("notes.txt")));
    QVERIFY(!left.contains(oldName(21)));
    QVERIFY(left.contains(oldName(22)));
    QVERIFY(left.contains(oldName(49)));
    int written = 0;
    for (const QString &name : left)
        written += backup(name) == backupText(stampedDevices("a")) ? 1 : 0;
    QCOMPARE(written, 1);
}

void TestDataMgr::databasesInTheBackups()
{
    Run run(m_folder->path(), "");
    const QString database = run.dbOperator.database()->filePath();
    DeviceBackup kept(m_folder->path() + QLatin1Char('/'));
    for (int i = 0; i < 12; ++i) {
        run.mgr.insertContactNode(stampedDevice(QString::number(i)));
        QVERIFY(kept.copyDatabase(database));
        const QString path = kept.lastPath();
        QVERIFY(!fileContent(path).isEmpty());
        QCOMPARE(fileContent(path), fileContent(database));
        QVERIFY(kept.copyDatabase(database));
        QCOMPARE(kept.lastPath(), path);
    }
    QCOMPARE(backups().size(), 10);

    run.mgr.close();
    const QByteArray content = fileContent(database);
    QVERIFY(QFile::copy(database, database + QLatin1String("-journal")));
    QVERIFY(kept.putAside(database));
    QVERIFY(!QFile::exists(database) && !QFile::exists(database + QLatin1String("-journal")));
    const QStringList aside = backups().filter(QStringLiteral("unreadable"));
    QCOMPARE(aside.size(), 2);
    QCOMPARE(aside.last(), aside.first() + QLatin1String("-journal"));
    QCOMPARE(backup(aside.first()), content);
}

void TestDataMgr::asksBeforeGoingOnWithoutBackup()
{
    blockBackups();
    Run run(m_folder->path(), "a b");

    m_user->answers = QStringList{no};
    QVERIFY(!run.deleteAll());
    QCOMPARE(run.mgr.devices().size(), 2);
    QCOMPARE(difference(run), QString());
    QCOMPARE(run.changes.size(), 0);
    QCOMPARE(m_user->titles(), QStringList{backupError});
    QCOMPARE(m_user->boxes.first().buttons, (QSet<QString>{yes, no}));

    m_user->answers.clear(); // closed without an answer
    QVERIFY(!run.deleteAll());
    QCOMPARE(run.mgr.devices().size(), 2);

    m_user->answers = QStringList{yes};
    QVERIFY(run.deleteAll());
    QCOMPARE(run.mgr.devices().size(), 0);
    QCOMPARE(difference(run), QString());
    QVERIFY(QFileInfo(at(QStringLiteral("backup"))).isFile());
}

/// What was refused must not happen later, when a telephone asks or the program ends.
void TestDataMgr::aRefusedDeletionStaysRefused()
{
    store(stampedDevices("a b"));
    const QByteArray before = fileContent(databasePath());
    blockBackups();
    Run run(m_folder->path(), "");
    m_user->answers = QStringList{no};
    QVERIFY(!run.deleteAll());
    QVERIFY(QFile::remove(at(QStringLiteral("backup"))));
    std::thread([&] { run.mgr.saveList(); }).join();
    QCoreApplication::processEvents();
    QVERIFY(run.mgr.keepUnsavedList());
    QCOMPARE(fileContent(databasePath()), before);
    QCOMPARE(m_user->titles(), QStringList{backupError});
}

void TestDataMgr::nextRunFindsTheListNumberedAnew()
{
    QList<ContactInfo> devices = stampedDevices("c a b");
    devices[1].company = QString::fromUtf8("北京 \"Müller\", it's 📞\r\n");
    store(devices);
    {
        const RawDatabase raw(databasePath());
        QVERIFY(raw.exec(QStringLiteral("update contact1 set id = id * 10")));
    }
    Run run(m_folder->path(), "");
    bool busyDuringChange = false;
    connect(&run.mgr, &DataMgr::updateModel, this, [&] { busyDuringChange = run.mgr.isBusy(); });
    QVERIFY(run.load());
    QVERIFY(busyDuringChange);
    QVERIFY(!run.mgr.isBusy());
    QVERIFY(run.contacts() == numbered(devices));
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("d")));
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
    store(stampedDevices("a b"));
    if (!backupWorks)
        blockBackups();
    const QByteArray before = fileContent(databasePath());

    Run run(m_folder->path(), "");
    m_user->answers = QStringList{no};
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("c")));
    QCOMPARE(run.stamps(), QStringLiteral("c"));
    if (backupWorks) {
        QVERIFY(m_user->boxes.isEmpty());
        QCOMPARE(backups().size(), 1);
        QCOMPARE(backup(backups().constFirst()), backupText(stampedDevices("a b")));
        run.mgr.insertContactNode(stampedDevice(QStringLiteral("d")));
        QCOMPARE(backups().size(), 1);
    } else {
        QCOMPARE(m_user->titles(), QStringList({backupError, saveError}));
        QCOMPARE(fileContent(databasePath()), before);
        m_user->answers = QStringList{yes};
        run.mgr.insertContactNode(stampedDevice(QStringLiteral("d")));
        QCOMPARE(m_user->titles(), QStringList({backupError, saveError, backupError}));
    }
    QCOMPARE(run.mgr.devices().size(), 2);
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::failedSaveIsToldOnceAndTriedAgain()
{
    Run run(m_folder->path(), "a b");
    const QList<ContactInfo> stored = run.contacts();
    const RawDatabase other(databasePath());
    const auto limitPages = [](const QString &pages) {
        QSqlQuery query(QSqlDatabase::database());
        QVERIFY(query.exec(QStringLiteral("pragma max_page_count = ") + pages));
    };
    QVERIFY(other.exec(QStringLiteral("begin exclusive")));
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("c")));
    QVERIFY(other.exec(QStringLiteral("rollback")));
    QCOMPARE(run.stamps(), QStringLiteral("a b c"));
    QCOMPARE(run.changes.size(), 1);
    QCOMPARE(m_user->titles(), QStringList{saveError});
    const QString error = run.mgr.lastErrorText();
    QVERIFY2(m_user->boxes.first().text.contains(error) && !error.isEmpty(), qPrintable(error));
    QCOMPARE(other.difference(stored), QString());

    // Told once, however often it fails, and for whatever reason.
    limitPages(QStringLiteral("1")); // SQLite takes the present size
    ContactInfo large = stampedDevice(QStringLiteral("large"));
    large.company = QString(1000000, QLatin1Char('x'));
    run.mgr.insertContactNode(large);
    QVERIFY(!run.save());
    QCOMPARE(m_user->boxes.size(), 1);
    QCOMPARE(other.difference(stored), QString());
    limitPages(QStringLiteral("1000000"));
    run.mgr.deleteContactAt(0);
    QCOMPARE(run.stamps(), QStringLiteral("b c large"));
    QCOMPARE(difference(run), QString());

    // A failure after that is news again.
    limitPages(QStringLiteral("1"));
    large.mac = QStringLiteral("larger");
    run.mgr.insertContactNode(large);
    QCOMPARE(m_user->titles(), QStringList({saveError, saveError}));
}

void TestDataMgr::deleteThatFailsIsNoSave()
{
    Run run(m_folder->path(), "a");
    const RawDatabase raw(databasePath());
    QVERIFY(raw.exec(QStringLiteral("create trigger keep before delete on contact1 begin "
                                    "select raise(abort, 'rows stay'); end")));
    run.mgr.deleteContactAt(0);
    QCOMPARE(m_user->titles(), QStringList({saveError, backupTold})); // somebody else's trigger
    QCOMPARE(raw.rows().size(), 1);
    QVERIFY(raw.exec(QStringLiteral("drop trigger keep")));
    QVERIFY(run.save());
    QCOMPARE(difference(run), QString());
}

void TestDataMgr::damagedStoreIsLeftAlone_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<bool>("opens");
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
        if (damage == QLatin1String("cut")) {
            QVERIFY(file.resize(file.size() / 3));
        } else {
            const int place =
                fileContent(databasePath()).indexOf(isFar ? "2500.sip_server" : "100.sip_server");
            QVERIFY(place > 0);
            QVERIFY(file.seek(qint64(place) / 4096 * 4096));
            file.write(QByteArray(4096, '\xff'));
        }
    }
    const QByteArray before = fileContent(databasePath());

    Run run(m_folder->path());
    QCOMPARE(run.mgr.openDatabase(), opens);
    QVERIFY(!run.load());
    QCOMPARE(run.changes.size(), 0);
    QCOMPARE(run.mgr.devices().size(), 0);
    QVERIFY(run.mgr.keepUnsavedList());
    QVERIFY(!run.mgr.lastErrorText().isEmpty());
    QVERIFY(!run.mgr.isStoreUsable());
    QVERIFY(!run.mgr.isBusy());
    QVERIFY(m_user->boxes.isEmpty()); // told by whoever opens it

    run.mgr.insertContactNode(stampedDevice(QStringLiteral("new")));
    run.mgr.deleteContactAt(0);
    run.mgr.addContacts(stampedDevices("x y"));
    QCOMPARE(run.mgr.devices().size(), 2);
    QCOMPARE(m_user->titles(), QStringList{saveError});
    run.mgr.close();
    QCOMPARE(fileContent(databasePath()), before);
}

void TestDataMgr::endOfProgramKeepsAnUnsavedList()
{
    store(stampedDevices("old"));
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
        QCOMPARE(backup(backups().constFirst()), backupText(stampedDevices("a")));
        QVERIFY2(m_user->boxes.first().text.contains(backups().constFirst()),
                 qPrintable(m_user->boxes.first().text));

        QVERIFY(QDir(at(QStringLiteral("backup"))).removeRecursively());
        blockBackups();
        m_user->answers = QStringList{no};
        QVERIFY(!run.mgr.keepUnsavedList());
        m_user->answers = QStringList{yes};
        QVERIFY(run.mgr.keepUnsavedList());
    }
    // What could not be saved before, but can be now, is just saved.
    QVERIFY(QFile::remove(databasePath()) && QFile::remove(at(QStringLiteral("backup"))));
    m_user->boxes.clear();
    Run run(m_folder->path(), "");
    const RawDatabase raw(databasePath());
    QVERIFY(raw.exec(QStringLiteral("create trigger stop before insert on contact1 begin "
                                    "select raise(abort, 'not now'); end")));
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
    QVERIFY(raw.exec(QStringLiteral("drop trigger stop")));
    QVERIFY(run.mgr.keepUnsavedList());
    QCOMPARE(difference(run), QString());
    QCOMPARE(m_user->titles(), QStringList({saveError, backupTold}));
}

/// A connection thread never writes; it asks for another try when the last one failed.
void TestDataMgr::savingFromAnotherThread()
{
    store(stampedDevices("old"));
    Run run(m_folder->path(), "");
    const auto saveElsewhere = [&] { std::thread([&] { run.mgr.saveList(); }).join(); };
    int writesBefore = writes();

    // The list of this run is not in the table, but no save has failed.
    saveElsewhere();
    QCoreApplication::processEvents();
    QCOMPARE(writes(), writesBefore);

    QVERIFY(run.load());
    const RawDatabase raw(databasePath());
    QVERIFY(raw.exec(QStringLiteral("create trigger stop before insert on contact1 begin "
                                    "select raise(abort, 'not now'); end")));
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
    QCOMPARE(m_user->titles(), QStringList({saveError, backupTold}));
    // A try that fails as well leaves the next one open, and says nothing.
    saveElsewhere();
    QCoreApplication::processEvents();
    QCOMPARE(m_user->boxes.size(), 2);
    QVERIFY(raw.exec(QStringLiteral("drop trigger stop")));
    // However often telephones ask, there is a pause between two tries.
    writesBefore = writes();
    saveElsewhere();
    QCoreApplication::processEvents();
    QCOMPARE(writes(), writesBefore);
    run.mgr.setRetryPause(0);

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
    QTRY_COMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList({QStringLiteral("port.xml"), QStringLiteral("tmp3.csv")}));
    QVERIFY(QFileInfo::exists(elsewhere.path()));
}

/// A long job lets events through, and with them changes: they wait, and nobody sees a list that is
/// neither the old nor the new one.
void TestDataMgr::changesWaitForALongJob_data()
{
    QTest::addColumn<QString>("job");
    QTest::newRow("load") << QStringLiteral("load");
    QTest::newRow("batch") << QStringLiteral("batch");
    QTest::newRow("import in place of the list") << QStringLiteral("import");
}

void TestDataMgr::changesWaitForALongJob()
{
    QFETCH(QString, job);
    constexpr int count = 5000;
    QList<ContactInfo> devices;
    for (int i = 0; i < count; ++i)
        devices.append(stampedDevice(QString::number(i)));
    const bool isLoad = job == QLatin1String("load");
    store(isLoad ? devices : stampedDevices("a b"));
    Run run(m_folder->path(), "");
    if (!isLoad)
        QVERIFY(run.load());
    const int before = run.mgr.devices().size();
    QSet<int> sizes;
    connect(&run.mgr, &DataMgr::updateModel, &run.mgr,
            [&] { sizes.insert(run.mgr.devices().size()); });
    run.mgr.setSlice(0);
    run.mgr.setImportFlag(true);
    if (isLoad) {
        run.mgr.recoverPreviousData();
    } else if (job == QLatin1String("batch")) {
        run.mgr.addContacts(devices);
    } else {
        writeFile(at(QStringLiteral("long.csv")), DeviceBackup::csv(devices));
        run.mgr.importFile(at(QStringLiteral("long.csv")));
    }
    QVERIFY(!run.mgr.worker().isIdle());
    ContactInfo edited = stampedDevice(QStringLiteral("edited"));
    edited.id = 1;
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("one more")));
    run.mgr.updateContact(edited); // of a device that may be another one's by then
    run.mgr.deleteContactAt(1);
    QCOMPARE(run.mgr.devices().size(), before);
    sizes.remove(before);
    QVERIFY(sizes.isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(run.mgr.worker().isIdle(), 30000);

    const bool isBatch = job == QLatin1String("batch");
    const int made = isBatch ? before + count : count;
    QCOMPARE(sizes, isBatch ? (QSet<int>{made, made + 1, made}) : (QSet<int>{made, made + 1}));
    QCOMPARE(run.mgr.devices().size(), isBatch ? made : made + 1);
    QCOMPARE(run.mgr.devices().at(0).info.mac, isBatch ? edited.mac : QStringLiteral("0.mac"));
    QCOMPARE(difference(run), QString());
    QVERIFY(m_user->boxes.isEmpty());
}

/// The edit that comes while a question is open concerns a device that the import then drops.
void TestDataMgr::anEditDuringAQuestionWaits()
{
    Run run(m_folder->path(), "a b");
    writeFile(at(QStringLiteral("list.csv")), DeviceBackup::csv(stampedDevices("x y x")));
    ContactInfo edited = stampedDevice(QStringLiteral("edited"));
    edited.id = 2;
    m_user->answers = QStringList{no};
    m_user->meanwhile = [&] {
        run.mgr.updateContact(edited);
        QCOMPARE(run.stamps(), QStringLiteral("a b"));
        QCOMPARE(difference(run), QString());
    };
    run.mgr.setImportFlag(true);
    QVERIFY(run.import(at(QStringLiteral("list.csv"))));
    QTRY_VERIFY(run.mgr.worker().isIdle());
    QCOMPARE(m_user->titles(), QStringList{replaceAction});
    QCOMPARE(run.stamps(), QStringLiteral("x y"));
    QCOMPARE(difference(run), QString());
}

/// What the file holds and the list does not is copied, with the whole file, before it goes.
void TestDataMgr::rowsOfOthersAreKept_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("whileRunning");
    QTest::newRow("no id") << QStringLiteral("NULL") << false;
    QTest::newRow("id 0") << QStringLiteral("0") << false;
    QTest::newRow("negative id") << QStringLiteral("-7") << false;
    QTest::newRow("beyond 32 bits") << QStringLiteral("4294967296") << false;
    QTest::newRow("added meanwhile") << QStringLiteral("3") << true;
}

void TestDataMgr::rowsOfOthersAreKept()
{
    QFETCH(QString, id);
    QFETCH(bool, whileRunning);
    store(stampedDevices("a b"));
    const auto addRow = [&] {
        QVERIFY(RawDatabase(databasePath())
                    .exec(QStringLiteral("insert into contact1 (id, mac, flag) values "
                                         "(%1, 'foreign', 0)")
                              .arg(id)));
        // Rows behind it are read all the same.
        QVERIFY(RawDatabase(databasePath())
                    .exec(QStringLiteral("insert into contact1 (id, mac, flag) values "
                                         "(9, 'c.mac', 0)")));
    };
    if (!whileRunning)
        addRow();
    const QByteArray before = fileContent(databasePath());
    for (const bool change : {false, true}) {
        Run run(m_folder->path(), "");
        QVERIFY(run.load());
        QCOMPARE(run.stamps(), whileRunning ? QStringLiteral("a b") : QStringLiteral("a b c"));
        if (!change) {
            QVERIFY(run.mgr.keepUnsavedList());
            run.mgr.close();
            QCOMPARE(fileContent(databasePath()), before);
            QVERIFY(backups().isEmpty());
            continue;
        }
        if (whileRunning)
            addRow();
        run.mgr.deleteContactAt(0);
        QCOMPARE(difference(run), QString());
        QCOMPARE(backups().size(), 1);
        const RawDatabase copy(at(QStringLiteral("backup/")) + backups().constFirst());
        QCOMPARE(copy.value(QStringLiteral("select count(*) from contact1 where mac='foreign'")),
                 QVariant(1));
        QCOMPARE(copy.rows().size(), 4);
        QCOMPARE(m_user->titles(), QStringList{backupTold});
        run.mgr.deleteContactAt(0);
        QCOMPARE(backups().size(), 1);
    }
}

/// A lock is no damage: the file is left to whoever has it, and saving goes on when it is free.
void TestDataMgr::aHeldDatabaseIsWaitedFor()
{
    store(stampedDevices("a b"));
    writeFile(at(QStringLiteral("list.csv")), DeviceBackup::csv(stampedDevices("x")));
    const RawDatabase other(databasePath());
    const QString held = QStringLiteral("the database is in use by another program");
    Run run(m_folder->path(), "");
    run.mgr.setImportFlag(true);
    QVERIFY(other.exec(QStringLiteral("begin exclusive")));
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("c")));
    QCOMPARE(run.mgr.lastErrorText(), held);
    QVERIFY(!run.import(at(QStringLiteral("list.csv"))));
    QCOMPARE(run.lastReason, held);
    QCOMPARE(run.stamps(), QStringLiteral("c"));
    QVERIFY(other.exec(QStringLiteral("rollback")));
    run.mgr.insertContactNode(stampedDevice(QStringLiteral("d")));
    QCOMPARE(run.stamps(), QStringLiteral("c d"));
    QCOMPARE(difference(run), QString());
    QCOMPARE(m_user->titles(), QStringList{saveError});
    run.mgr.close();

    // From the start: the file stays, and is read once it is free.
    QVERIFY(other.exec(QStringLiteral("begin exclusive")));
    Run next(m_folder->path());
    next.mgr.setImportFlag(true);
    QVERIFY(!next.mgr.openDatabase());
    QVERIFY(!next.import(at(QStringLiteral("list.csv"))));
    QCOMPARE(next.lastReason, held);
    QVERIFY(other.exec(QStringLiteral("rollback")));
    QVERIFY(next.import(at(QStringLiteral("list.csv"))));
    QCOMPARE(difference(next), QString());
    QCOMPARE(next.stamps(), QStringLiteral("x"));
}

void TestDataMgr::aSecondProgramIsKeptOff()
{
    Run first(m_folder->path(), "a");
    Run second(m_folder->path());
    QVERIFY(!second.mgr.openDatabase());
    QVERIFY2(
        second.mgr.lastErrorText().contains(QString::number(QCoreApplication::applicationPid())),
        qPrintable(second.mgr.lastErrorText()));
    second.mgr.insertContactNode(stampedDevice(QStringLiteral("b")));
    second.mgr.close();
    QCOMPARE(difference(first), QString());
    first.mgr.close();
    QVERIFY(second.mgr.openDatabase());
}

QTEST_MAIN(TestDataMgr)
#include "tst_datamgr.moc"
