#include "DataSide.h"

#include <QFileInfo>
#include <QtTest>

#include <thread>

using Change = std::function<void(Run &)>;
Q_DECLARE_METATYPE(Change)

namespace {

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
const QString lockedText = "the database is in use by another program"_s;

void edit(Run &run, int id, const char *stamp, const QString &macBefore = {})
{
    ContactInfo edited = stampedDevice(QLatin1String(stamp));
    edited.id = id;
    run.mgr.updateContact(edited, macBefore);
}

/// As a connection thread does it.
void saveElsewhere(Run &run)
{
    std::thread([&] { run.mgr.saveList(); }).join();
    QCoreApplication::processEvents();
}

/// From now on every save fails, by somebody else's trigger.
void refuse(const RawDatabase &raw)
{
    QVERIFY(raw.exec("create trigger stop before delete on contact1 begin "
                     "select raise(abort, 'not now'); end"_s));
}

void allow(const RawDatabase &raw)
{
    QVERIFY(raw.exec("drop trigger stop"_s));
}

} // namespace

class TestDataMgr : public QObject, protected DataSide
{
    Q_OBJECT

private slots:
    void init() { begin(); }

    void changes_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("answers"); // as many as there are questions
        QTest::addColumn<QString>("stamps");      // as before: no change
        const auto row = [](const char *name, const char *stamps, const Change &change,
                            const QStringList &answers = {}) {
            QTest::newRow(name) << change << answers << QString::fromLatin1(stamps);
        };
        const auto replace = [](Run &run) {
            ContactInfo device = stampedDevice("new"_s);
            device.mac = "b.mac"_s;
            device.id = 99;
            run.mgr.insertContactNode(device);
            QCOMPARE(run.contacts().at(1).city == device.city, !run.changes.isEmpty());
        };
        const auto batch = [](Run &run) { run.mgr.addContacts(stampedDevices("e f e")); };
        row("new", "a b c d e", [](Run &run) { run.insert("e"); });
        row("empty", "a b c d ", [](Run &run) { run.mgr.insertContactNode({}); });
        row("listed, No", "a b c d", replace, {no});
        row("listed, Yes", "a b c d", replace, {yes});
        row("batch, one twice", "a b c d e f", batch, {no});
        row("edit", "a x c d", [](Run &run) { edit(run, 2, "x"); });
        row("edit, moved since", "a x c d", [](Run &run) { edit(run, 3, "x", "b.mac"_s); });
        row("edit, gone since", "a b c d", [](Run &run) { edit(run, 3, "x", "gone.mac"_s); });
        row("edit, no such number", "a b c d", [](Run &run) { edit(run, 5, "x"); });
        row("edit to another's MAC, No", "a b c d", [](Run &run) { edit(run, 2, "a"); }, {no});
        row("edit to another's MAC, Yes", "a d c", [](Run &run) { edit(run, 2, "d"); }, {yes});
        row("delete", "a c d", [](Run &run) { run.mgr.deleteContactAt(1); });
        row("delete the last", "a b c", [](Run &run) { run.mgr.deleteContactAt(3); });
        row("delete before the first", "a b c d", [](Run &run) { run.mgr.deleteContactAt(-1); });
        row("delete behind the last", "a b c d", [](Run &run) { run.mgr.deleteContactAt(4); });
        row("delete all", "", [](Run &run) { run.mgr.deleteAllContacts(); });
    }

    /// Each change is saved once and can be taken back.
    void changes()
    {
        QFETCH(Change, change);
        QFETCH(QStringList, answers);
        QFETCH(QString, stamps);
        Run run(folder(), "a b c d");
        const QList<ContactInfo> before = run.contacts();
        const int writesBefore = writes();
        m_user->answers = answers;
        change(run);
        run.mgr.save(); // no more is written
        run.mgr.saveList();
        const QList<ContactInfo> after = run.contacts();
        QCOMPARE(after, numbered(after));
        QCOMPARE(m_user->takeTitles().count("Replace action"_s), answers.size());
        QCOMPARE(state(run), stamps);
        QCOMPARE(writes(), writesBefore + (after == before ? 0 : 1));
        if (after == before)
            return;
        QCOMPARE(run.changes.size(), 1);

        run.mgr.undo();
        QCOMPARE(run.contacts(), before);
        QCOMPARE(state(run), "a b c d"_s);
        for (int row = 0; row < before.size(); ++row)
            QCOMPARE(run.mgr.devices().rowOfMac(before.at(row).mac), row);
        for (int i = 0; i < 2; ++i) { // the second time nothing is left to be made again
            run.mgr.redo();
            QCOMPARE(run.contacts(), after);
            QCOMPARE(state(run), stamps);
        }
    }

    /// The question runs an event loop. What comes meanwhile waits for its answer.
    void questionHoldsUpOtherChanges()
    {
        Run run(folder(), "a b");
        m_user->answers = QStringList{yes};
        m_user->meanwhile = [&] { run.mgr.deleteContactAt(0); };
        run.insert("a");
        QCOMPARE(state(run), "a b [Replace action]"_s);
        QTRY_COMPARE(state(run), "b"_s);

        // An edit of a device that the import then drops.
        m_user->answers = QStringList{no};
        m_user->meanwhile = [&] {
            edit(run, 1, "edited");
            QCOMPARE(state(run), "b [Replace action]"_s);
        };
        run.mgr.setImportFlag(true);
        QVERIFY(run.import(writeFile(at("x.csv"_s), backupText(stampedDevices("x y x")))));
        QTRY_VERIFY(run.mgr.worker().isIdle());
        QCOMPARE(state(run), "x y"_s);
    }

    void programEndsDuringAQuestion_data() { addRows({"batch", "delete all", "import"}); }

    void programEndsDuringAQuestion()
    {
        QFETCH(QByteArray, row);
        const QString list = writeFile(at("x.csv"_s), backupText(stampedDevices("d d e")));
        Run run(folder(), "a b");
        const QList<ContactInfo> before = run.contacts();
        const QByteArray file = fileContent(databasePath());
        blockBackups();
        m_user->answers = QStringList{yes};
        m_user->meanwhile = [&] {
            QVERIFY(run.mgr.keepUnsavedList());
            run.mgr.close();
        };
        run.mgr.setImportFlag(true);
        if (row == "batch")
            run.mgr.addContacts(stampedDevices("b c"));
        else
            QVERIFY(!(row == "import" ? run.import(list) : run.deleteAll()));
        QCOMPARE(run.contacts(), before);
        QCOMPARE(m_user->boxes.size(), 1);
        QCOMPARE(fileContent(databasePath()), file);
    }

    void fiftyStepsAreKept()
    {
        Run run(folder(), "");
        for (int i = 0; i < 50; ++i)
            run.mgr.insertContactNode(stampedDevice(QString::number(i)));
        for (int i = 50; i > 0; --i) {
            QCOMPARE(run.mgr.devices().size(), i);
            run.mgr.undo();
        }
        QVERIFY(run.mgr.devices().size() == 0 && !run.mgr.history().toUndo());
        run.mgr.redo();
        run.insert("x");
        QVERIFY(!run.mgr.history().toRedo());
        QCOMPARE(run.stamps(), "0 x"_s);

        // An undo during another change does nothing.
        run.mgr.setSlice(0);
        run.mgr.addContacts(thousandDevices("y"_s));
        run.mgr.undo();
        QTRY_VERIFY(run.mgr.worker().isIdle());
        QCOMPARE(run.mgr.devices().size(), 1002);
        // An undo during a save waits for it.
        run.mgr.deleteContactAt(0);
        QVERIFY(!run.mgr.worker().isIdle());
        run.mgr.undo();
        QTRY_COMPARE(run.mgr.devices().size(), 1002);
    }

    void deleteAllKeepsABackup()
    {
        Run run(folder(), "");
        QVERIFY(run.deleteAll());
        QVERIFY(backups().isEmpty()); // there was nothing to keep

        ContactInfo hard = deviceWithMac("02:00:A7:A1:B2:C3"_s);
        hard.company = "Smith, Jones"_s;
        hard.department = "the \"best\""_s;
        hard.city = "one\r\ntwo\nthree"_s;
        hard.username = " 北京 📞 "_s + QChar(QChar::Null);
        run.mgr.addContacts(stampedDevices("a") + QList<ContactInfo>{hard});
        const auto nameNow = [] {
            return QDateTime::currentDateTime().toString("'devices-'yyyyMMdd-hhmmss'.csv'"_s);
        };
        const QString before = nameNow();
        QVERIFY(run.deleteAll());
        const QString after = nameNow();

        QVERIFY(m_user->boxes.isEmpty());
        QCOMPARE(backups().size(), 1);
        const QString name = backups().constFirst();
        QVERIFY2(name >= before && name <= after, qPrintable(name));
        const QByteArray content = backup(name);
        QCOMPARE(content, backupText(stampedDevices("a")) +
                              "02:00:A7:A1:B2:C3,,,,,,,,, 北京 📞 ,,,,,,,,,,,"
                              "one two three,\"Smith, Jones\",\"the \"\"best\"\"\",\r\n");
        QCOMPARE(filePermissions(backupPath(name)), ownerOnly);
        QCOMPARE(filePermissions(at("backup"_s)), ownerOnly | QFile::ExeOwner);

        // Two lists within a second are two files, the same list is one. Numbers start again.
        for (const char *stamp : {"0", "1", "0"}) {
            run.insert(stamp);
            QCOMPARE(run.mgr.devices().at(0).number, 1);
            QVERIFY(run.deleteAll());
        }
        QCOMPARE(backups().size(), 3);
        QCOMPARE(backup(name), content);
    }

    void newestThirtyBackupsStay_data() { addRows({"right clock", "clock set back"}); }

    void newestThirtyBackupsStay()
    {
        QVERIFY(QDir(folder()).mkdir("backup"_s));
        const bool setBack = QString::fromUtf8(QTest::currentDataTag()) == "clock set back"_s;
        const QDateTime start(QDate(setBack ? 2090 : 2020, 1, 1), QTime(12, 0));
        const auto make = [this](const QString &name, const QDateTime &time) {
            QFile file(writeFile(backupPath(name)));
            QVERIFY(file.open(QIODevice::ReadWrite));
            file.setFileTime(time, QFileDevice::FileModificationTime);
        };
        QStringList left;
        for (int i = 10; i < 50; ++i) {
            left.append("devices-202001%1-120000.csv"_s.arg(i));
            make(left.last(), start.addDays(i));
        }
        left = left.mid(12); // 31 files remain: 30 and one dated in the future
        left += {"devices-20990101-000000.csv"_s, "devices-mine.csv"_s, "notes.txt"_s};
        make(left.at(28), start.addYears(99));
        make(left.at(29), start); // files of the user's own
        make(left.at(30), start);

        Run run(folder(), "a");
        QVERIFY(run.deleteAll());
        QStringList added = backups();
        for (const QString &name : qAsConst(left))
            QVERIFY2(added.removeOne(name), qPrintable(name));
        QCOMPARE(added.size(), 1);
        QCOMPARE(backup(added.first()), backupText(stampedDevices("a")));
        run.mgr.insertContactNode(stampedDevice("b"_s));
        QVERIFY(run.deleteAll());
        QVERIFY(backups().contains(added.first()));
    }

    void databasesInTheBackups()
    {
        Run run(folder(), "");
        const QString database = run.dbOperator.database()->filePath();
        DeviceBackup kept(folder() + QLatin1Char('/'));
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
        const QString journal = database + "-journal"_s;
        QVERIFY(QFile::copy(database, journal));
        QVERIFY(kept.putAside(database));
        QVERIFY(!QFile::exists(database) && !QFile::exists(journal));
        const QStringList aside = backups("*unreadable*"_s);
        QCOMPARE(aside.value(1), aside.value(0) + "-journal"_s);
    }

    void refusedBackupStopsTheJob_data() { addRows({"delete all", "import"}); }

    void refusedBackupStopsTheJob()
    {
        QFETCH(QByteArray, row);
        const bool isImport = row == "import";
        store(stampedDevices("a b"));
        const QByteArray before = fileContent(databasePath());
        const QString list = writeFile(at("x.csv"_s), backupText(stampedDevices("x")));
        blockBackups();
        Run run(folder(), "");
        QVERIFY(run.load());
        run.changes.clear();
        run.mgr.setImportFlag(true);
        for (const QString &answer : {no, QString()}) { // closed without an answer
            m_user->answers = QStringList{answer};
            QVERIFY(!(isImport ? run.import(list) : run.deleteAll()));
            QCOMPARE(m_user->boxes.constFirst().buttons, (QSet<QString>{yes, no}));
            QCOMPARE(state(run), "a b [Backup Error]"_s);
        }
        // What was refused must not happen later, when a phone asks or the program ends.
        unblockBackups();
        saveElsewhere(run);
        QVERIFY(run.mgr.keepUnsavedList());
        QCOMPARE(fileContent(databasePath()), before);
        QVERIFY(run.changes.isEmpty());

        blockBackups();
        m_user->answers = QStringList{yes};
        QVERIFY(isImport ? run.import(list) : run.deleteAll());
        QCOMPARE(state(run), isImport ? "x [Backup Error]"_s : " [Backup Error]"_s);
        QVERIFY(QFileInfo(at("backup"_s)).isFile());
    }

    void firstSaveKeepsRowsNeverLoaded_data() { addRows({"backup", "no backup possible"}); }

    void firstSaveKeepsRowsNeverLoaded()
    {
        QFETCH(QByteArray, row);
        const bool backupWorks = row == "backup";
        store(stampedDevices("a b"));
        if (!backupWorks)
            blockBackups();
        const QByteArray before = fileContent(databasePath());
        Run run(folder(), "");
        m_user->answers = QStringList{no};
        run.insert("c");
        QCOMPARE(state(run),
                 backupWorks ? "c"_s : "c (2 rows for 1 devices) [Backup Error, Save Error]"_s);
        QCOMPARE(fileContent(databasePath()) == before, !backupWorks);
        m_user->answers = QStringList{yes};
        run.insert("d");
        QCOMPARE(state(run), backupWorks ? "c d"_s : "c d [Backup Error]"_s);
        QCOMPARE(backups().size(), backupWorks ? 1 : 0);
        if (backupWorks)
            QCOMPARE(backup(backups().constFirst()), backupText(stampedDevices("a b")));
    }

    void failedSaveIsToldOnceAndTriedAgain()
    {
        Run run(folder(), "a b");
        const RawDatabase raw(databasePath());
        refuse(raw);
        run.insert("c");
        QCOMPARE(run.changes.size(), 1);
        const QString error = run.mgr.lastErrorText();
        QVERIFY2(m_user->boxes.first().text.contains(error) && !error.isEmpty(), qPrintable(error));
        // A trigger does not count as a foreign row: only the failure is told.
        QCOMPARE(state(run), "a b c (2 rows for 3 devices) [Save Error]"_s);
        run.insert("d");
        run.mgr.save();
        QVERIFY(!run.mgr.isSaved());
        QCOMPARE(state(run), "a b c d (2 rows for 4 devices)"_s);
        allow(raw);
        run.mgr.deleteContactAt(0);
        QCOMPARE(state(run), "b c d [Backup]"_s);
        // A later failure is told again.
        refuse(raw);
        run.insert("e");
        QCOMPARE(m_user->takeTitles().first(), "Save Error"_s);
    }

    void damagedStoreIsLeftAlone_data()
    {
        QTest::addColumn<int>("count");  // of devices in the file
        QTest::addColumn<QString>("at"); // the text in whose page the damage begins
        QTest::addColumn<bool>("opens");
        QTest::newRow("no database") << 0 << QString() << false;
        QTest::newRow("a folder") << -1 << QString() << false;
        QTest::newRow("another table") << -2 << QString() << false;
        QTest::newRow("cut off") << 200 << QString() << false;
        // The number of rows can still be read, the rows cannot.
        QTest::newRow("a page overwritten") << 200 << "100.sip_server"_s << true;
        // What was shown before the damage was met is taken back.
        QTest::newRow("a page far back overwritten") << 2600 << "2500.sip_server"_s << true;
    }

    void damagedStoreIsLeftAlone()
    {
        QFETCH(int, count);
        QFETCH(QString, at);
        QFETCH(bool, opens);
        if (count > 0)
            store(manyDevices(count));
        QByteArray before = fileContent(databasePath());
        if (!at.isEmpty()) {
            const int place = before.indexOf(at.toLatin1()) / 4096 * 4096;
            QVERIFY(place > 0);
            before.replace(place, 4096, QByteArray(4096, '\xff'));
        } else {
            before = count == 0 ? QByteArray("no database\n").repeated(500)
                                : before.left(before.size() / 3);
        }
        if (count == -1)
            QVERIFY(QDir().mkpath(databasePath() + "/something"_s));
        else if (count == -2)
            QVERIFY(RawDatabase(databasePath()).exec("create table notes (text)"_s));
        else
            writeFile(databasePath(), before);
        before = fileContent(databasePath());

        Run run(folder());
        QCOMPARE(run.mgr.openDatabase(), opens);
        QVERIFY(!run.load());
        QCOMPARE(run.changes.size(), 0);
        QCOMPARE(run.mgr.devices().size(), 0);
        QVERIFY(run.mgr.keepUnsavedList());
        QVERIFY(!run.mgr.lastErrorText().isEmpty());
        QVERIFY(!run.mgr.isStoreUsable());
        QVERIFY(!run.mgr.isBusy());
        QVERIFY(m_user->boxes.isEmpty()); // the caller tells the user

        run.insert("new");
        run.mgr.deleteContactAt(0);
        run.mgr.addContacts(stampedDevices("x y"));
        QCOMPARE(run.mgr.devices().size(), 2);
        QCOMPARE(m_user->takeTitles(), QStringList{"Save Error"_s});
        run.mgr.close();
        QCOMPARE(fileContent(databasePath()), before);
        QCOMPARE(QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{"phonebook.db"_s});
    }

    void endOfProgramKeepsAnUnsavedList()
    {
        writeFile(databasePath(), "no database");
        Run run(folder());
        QVERIFY(!run.mgr.openDatabase());
        QVERIFY(run.mgr.keepUnsavedList()); // there is nothing to keep
        QVERIFY(m_user->boxes.isEmpty());
        run.insert("a");
        m_user->boxes.clear();
        QVERIFY(run.mgr.keepUnsavedList());
        QCOMPARE(backups().size(), 1);
        const QString name = backups().constFirst();
        QCOMPARE(backup(name), backupText(stampedDevices("a")));
        QVERIFY2(m_user->boxes.first().text.contains(name), qPrintable(m_user->boxes.first().text));
        QCOMPARE(m_user->takeTitles(), QStringList{"Save Error"_s});
    }

    /// A connection thread never writes; it asks for another try when the last one failed.
    void savingFromAnotherThread()
    {
        store(stampedDevices("old"));
        Run run(folder(), "");
        const RawDatabase raw(databasePath());
        int writesBefore = writes();
        saveElsewhere(run); // the table differs from this run's list, but no save has failed
        QCOMPARE(writes(), writesBefore);
        QVERIFY(run.load());
        refuse(raw);
        run.insert("a");
        QCOMPARE(state(run), "old a (1 rows for 2 devices) [Save Error]"_s);
        // A try that fails as well leaves the next one open, and says nothing.
        saveElsewhere(run);
        QCOMPARE(state(run), "old a (1 rows for 2 devices)"_s);
        allow(raw);
        // However often phones ask, there is a pause between two tries.
        writesBefore = writes();
        saveElsewhere(run);
        QCOMPARE(writes(), writesBefore);
        run.mgr.setRetryPause(0);
        for (int i = 0; i < 2; ++i)
            std::thread([&] { run.mgr.saveList(); }).join();
        QCOMPARE(writes(), writesBefore);
        QTRY_COMPARE(state(run), "old a"_s);
        saveElsewhere(run);
        QCOMPARE(writes(), writesBefore + 1);
    }

    void cleanUpRemovesWhatIsItsOwn()
    {
        Run run(folder());
        run.mgr.cleanUp();
        QVERIFY(QDir(folder()).isEmpty());

        for (const char *name : {"phonebook.db", "tmp.csv", "tmp1.csv", "tmp2.csv", "tmp3.csv",
                                 "port.xml", "HTTPD/MACCFG/.hidden", "HTTPD/MACCFG/cfg.xml"})
            writeFile(at(QLatin1String(name)));
        const QTemporaryDir elsewhere;
        QVERIFY(QFile::link(elsewhere.path(), at("HTTPD/link"_s)));
        run.mgr.cleanUp();
        const auto left = [this] {
            return QDir(folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        };
        QTRY_COMPARE(left(), QStringList({"port.xml"_s, "tmp3.csv"_s}));
        QVERIFY(QFileInfo::exists(elsewhere.path()));
        // Left by a program that ended meanwhile.
        writeFile(at("HTTPD.old/MACCFG/cfg.xml"_s));
        QVERIFY(run.mgr.openDatabase());
        QTRY_VERIFY(!left().contains("HTTPD.old"_s));
    }

    void changesWaitForALongJob_data() { addRows({"load", "batch", "import"}); }

    /// A long job lets events through, and with them changes: they wait, and nobody sees a list
    /// that is neither the old nor the new one.
    void changesWaitForALongJob()
    {
        QFETCH(QByteArray, row);
        const QList<ContactInfo> devices = manyDevices(5000);
        const bool isLoad = row == "load";
        const bool isBatch = row == "batch";
        store(isLoad ? devices : stampedDevices("a b"));
        Run run(folder(), "");
        if (!isLoad)
            QVERIFY(run.load());
        const int before = run.mgr.devices().size();
        QSet<int> sizes;
        connect(&run.mgr, &DataMgr::updateModel, &run.mgr,
                [&] { sizes.insert(run.mgr.devices().size()); });
        run.mgr.setSlice(0);
        run.mgr.setImportFlag(true);
        if (isLoad)
            run.mgr.recoverPreviousData();
        else if (isBatch)
            run.mgr.addContacts(devices);
        else
            run.mgr.importFile(writeFile(at("long.csv"_s), DeviceBackup::csv(devices)));
        QVERIFY(!run.mgr.worker().isIdle());
        QCOMPARE(run.mgr.isBusy(), isLoad);
        run.insert("one more");
        edit(run, 1, "edited"); // the number may be another device's by then
        run.mgr.deleteContactAt(1);
        QCOMPARE(run.mgr.devices().size(), before);
        sizes.remove(before);
        QVERIFY(sizes.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(run.mgr.worker().isIdle(), 30000);

        const int made = devices.size() + (isBatch ? before : 0);
        QCOMPARE(sizes, (QSet<int>{made, made + 1}));
        QCOMPARE(run.mgr.devices().size(), isBatch ? made : made + 1);
        QCOMPARE(run.mgr.devices().at(0).info.mac, isBatch ? "edited.mac"_s : "0.mac"_s);
        QCOMPARE(state(run), run.stamps());
        QVERIFY(!run.mgr.isBusy());
    }

    void rowsOfOthersAreKept_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<bool>("whileRunning");
        QTest::newRow("no id") << "NULL"_s << false;
        QTest::newRow("id 0") << "0"_s << false;
        QTest::newRow("negative id") << "-7"_s << false;
        QTest::newRow("beyond 32 bits") << "4294967296"_s << false;
        QTest::newRow("added meanwhile") << "3"_s << true;
    }

    /// Rows that the list does not have are copied, with the whole file, before they go.
    void rowsOfOthersAreKept()
    {
        QFETCH(QString, id);
        QFETCH(bool, whileRunning);
        store(stampedDevices("a b"));
        const auto addRows = [&] { // the row after the foreign one is still read
            QVERIFY(RawDatabase(databasePath())
                        .exec("insert into contact1 (id, mac, flag) "
                              "values (%1, 'foreign', 0), (9, 'c.mac', 0)"_s.arg(id)));
        };
        if (!whileRunning)
            addRows();
        const QByteArray before = fileContent(databasePath());
        {
            Run unchanged(folder(), "");
            QVERIFY(unchanged.load());
            QVERIFY(unchanged.mgr.keepUnsavedList());
        }
        QCOMPARE(fileContent(databasePath()), before);
        QVERIFY(backups().isEmpty());

        Run run(folder(), "");
        QVERIFY(run.load());
        QCOMPARE(run.contacts(), numbered(run.contacts()));
        if (whileRunning)
            addRows();
        run.mgr.deleteContactAt(0);
        QCOMPARE(state(run), (whileRunning ? "b"_s : "b c"_s) + " [Backup]"_s);
        QCOMPARE(backups().size(), 1);
        const RawDatabase copy(backupPath(backups().constFirst()));
        QCOMPARE(copy.value("select count(*) from contact1 where mac='foreign'"_s), QVariant(1));
        QCOMPARE(copy.rows().size(), 4);
        run.mgr.deleteContactAt(0);
        QCOMPARE(backups().size(), 1);
    }

    /// A lock is no damage: the file is left to whoever has it, and saving goes on when it is free.
    void aHeldDatabaseIsWaitedFor()
    {
        store(stampedDevices("a b"));
        const QString list = writeFile(at("list.csv"_s), DeviceBackup::csv(stampedDevices("x")));
        const RawDatabase other(databasePath());
        Run run(folder(), "");
        run.mgr.setImportFlag(true);
        QVERIFY(other.exec("begin exclusive"_s));
        run.insert("c");
        QCOMPARE(m_user->takeTitles(), QStringList{"Save Error"_s});
        QCOMPARE(run.mgr.lastErrorText(), lockedText);
        QVERIFY(!run.import(list));
        QCOMPARE(run.lastReason, lockedText);
        QVERIFY(other.exec("rollback"_s));
        run.insert("d");
        QCOMPARE(state(run), "c d"_s);
        run.mgr.close();

        // A file that is locked from the start is left alone, and read once it is free.
        QVERIFY(other.exec("begin exclusive"_s));
        Run next(folder());
        next.mgr.setImportFlag(true);
        QVERIFY(!next.mgr.openDatabase());
        QVERIFY(!next.import(list));
        QCOMPARE(next.lastReason, lockedText);
        QVERIFY(other.exec("rollback"_s));
        QVERIFY(next.import(list));
        QCOMPARE(state(next), "x"_s);
    }

    void aSecondProgramIsKeptOff()
    {
        Run first(folder(), "a");
        Run second(folder());
        QVERIFY(!second.mgr.openDatabase());
        const QString error = second.mgr.lastErrorText();
        QVERIFY2(error.contains(QString::number(QCoreApplication::applicationPid())),
                 qPrintable(error));
        second.insert("b");
        second.mgr.close();
        QCOMPARE(state(first), "a [Save Error]"_s);
        first.mgr.close();
        // Left by a program that was stopped right after making it.
        writeFile(at("phonebook.db.lock"_s));
        QVERIFY(second.mgr.openDatabase());
    }

private:
    /// Number of transactions that have changed the file.
    int writes() const { return fileContent(databasePath()).mid(24, 4).toHex().toInt(nullptr, 16); }
};

QTEST_MAIN(TestDataMgr)
#include "tst_datamgr.moc"
