// Kills the program in the middle of its changes. Twenty rounds of each kind, or as many as the
// environment's VL_KILL_ROUNDS says. The killed program is this one as well, started with a kind
// and a folder.
#include "DataSide.h"

#include <QApplication>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>

#include <cstdio>

namespace {

constexpr int createFailed = 1;
constexpr int changeFailed = 2;

void tellReady()
{
    std::puts("ready");
    std::fflush(stdout);
}

/// Changes a stored list of 1,000 devices: list "one" becomes list "two", and that list "one".
/// "batch" replaces every device, "import" imports a file in place of the list, "undo" takes such a
/// batch back and makes it again.
int changeForEver(const QString &kind, const QString &folder)
{
    User user;
    user.answers = QStringList{"Yes to All"_s};
    Run run(folder, "");
    DataMgr &mgr = run.mgr;
    mgr.setImportFlag(true);
    mgr.recoverPreviousData();
    const QList<ContactInfo> lists[] = {thousandDevices("one"_s), thousandDevices("two"_s)};
    const QString files[] = {
        writeFile(folder + "/one.csv"_s, DeviceBackup::csv(lists[0])),
        writeFile(folder + "/two.csv"_s, DeviceBackup::csv(lists[1])),
    };
    const auto isListed = [&](int which) {
        return mgr.devices().size() > 0 &&
               mgr.devices().at(0).info.city == lists[which].first().city;
    };
    if (mgr.devices().size() == 0)
        mgr.addContacts(lists[1]);
    tellReady();
    int made = 0;
    for (int i = isListed(0) ? 1 : 0;; i = 1 - i) {
        if (kind == QLatin1String("import"))
            mgr.importFile(files[i]);
        else if (kind == QLatin1String("undo") && made++ >= 2)
            made % 2 == 1 ? mgr.undo() : mgr.redo();
        else
            mgr.addContacts(lists[i]);
        user.boxes.clear();
        if (!mgr.isSaved() || !isListed(i))
            return changeFailed;
    }
}

/// Creates one store after the other in new folders 0, 1, 2, ...
int createForEver(const QString &folder)
{
    for (int i = 0;; ++i) {
        const QString place = folder + QLatin1Char('/') + QString::number(i);
        QDir().mkpath(place);
        if (!Run(place).mgr.openDatabase())
            return createFailed;
        if (i == 0)
            tellReady();
    }
}

int rounds()
{
    bool given = false;
    const int count = qEnvironmentVariableIntValue("VL_KILL_ROUNDS", &given);
    return given ? count : 20;
}

/// Lets it work for a random time of up to `longest` ms, and kills it. False when it did not get to
/// work or ended by itself.
bool runAndKill(const QString &kind, const QString &folder, int longest)
{
    QProcess saver;
    saver.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    saver.start(QCoreApplication::applicationFilePath(), {kind, folder});
    while (saver.state() != QProcess::NotRunning && !saver.canReadLine())
        saver.waitForReadyRead();
    if (!saver.canReadLine())
        return false;
    const bool ended = saver.waitForFinished(QRandomGenerator::global()->bounded(longest));
    saver.kill();
    return !ended && saver.waitForFinished(-1) && saver.exitStatus() == QProcess::CrashExit;
}

} // namespace

class TestKillSafety : public QObject, protected DataSide
{
    Q_OBJECT

private slots:
    void init() { begin(); }

    void savesAreWhole_data() { addRows({"batch", "import", "undo"}); }

    void savesAreWhole()
    {
        QFETCH(QByteArray, row);
        int interrupted = 0;
        for (int round = 0; round < rounds(); ++round) {
            QVERIFY(runAndKill(QString::fromLatin1(row), folder(), 100));
            interrupted += QFileInfo::exists(databasePath() + QLatin1String("-journal")) ? 1 : 0;
            const RawDatabase raw(databasePath());
            QCOMPARE(raw.value("pragma integrity_check"_s).toString(), "ok"_s);
            const QString one = raw.difference(thousandDevices("one"_s));
            QVERIFY2(one.isEmpty() || raw.difference(thousandDevices("two"_s)).isEmpty(),
                     qPrintable(one));
        }
        qInfo("%d of %d kills met a save under way", interrupted, rounds());
        // Otherwise nothing was tested.
        QVERIFY(interrupted > 0);
    }

    void creationIsWhole()
    {
        int interrupted = 0;
        for (int round = 0; round < rounds(); ++round) {
            begin();
            QVERIFY(runAndKill("create"_s, folder(), 30));
            const int created = QDir(folder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
            QVERIFY(created > 0);
            const QString place = at(QString::number(created - 1));
            const QString path = place + "/phonebook.db"_s;
            const bool isMade =
                !QFileInfo::exists(path + "-journal"_s) && QFileInfo(path).size() > 0;
            interrupted += isMade ? 0 : 1;
            Run run(place);
            QVERIFY2(run.mgr.openDatabase(), qPrintable(run.mgr.lastErrorText()));
            run.insert("a");
            const RawDatabase raw(path);
            QCOMPARE(raw.value("pragma integrity_check"_s).toString(), "ok"_s);
            QCOMPARE(raw.difference(stampedDevices("a")), QString());
        }
        qInfo("%d of %d kills met a creation under way", interrupted, rounds());
        QVERIFY(interrupted > 0);
    }
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString kind = arguments.value(1);
    if (kind == QLatin1String("create"))
        return createForEver(arguments.value(2));
    if (kind == QLatin1String("batch") || kind == QLatin1String("import") ||
        kind == QLatin1String("undo"))
        return changeForEver(kind, arguments.value(2));
    TestKillSafety test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_killsafety.moc"
