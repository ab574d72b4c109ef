// Kills the program in the middle of its changes. Twenty rounds of each kind, or as many as the
// environment's VL_KILL_ROUNDS says.
#include "RawDatabase.h"
#include "TestDevices.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

namespace {

int rounds()
{
    bool given = false;
    const int count = qEnvironmentVariableIntValue("VL_KILL_ROUNDS", &given);
    return given ? count : 20;
}

/// Starts the saver, lets it work for a random time of up to `longest` ms, and kills it. False when
/// it did not get to work or ended by itself.
bool runAndKill(const QString &mode, const QString &folder, int longest)
{
    QProcess saver;
    saver.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    saver.start(QStringLiteral(VL_KILLED_SAVER), {mode, folder});
    while (saver.state() != QProcess::NotRunning && !saver.canReadLine())
        saver.waitForReadyRead();
    if (!saver.canReadLine())
        return false;
    const bool ended = saver.waitForFinished(QRandomGenerator::global()->bounded(longest));
    saver.kill();
    return !ended && saver.waitForFinished() && saver.exitStatus() == QProcess::CrashExit;
}

/// The stamp of the one list that all rows come from; empty when they are not one whole list.
QString storedStamp(const RawDatabase &raw)
{
    const QList<QSqlRecord> rows = raw.rows();
    if (rows.isEmpty())
        return {};
    const QString stamp =
        rows.first().value(QStringLiteral("city")).toString().section(QLatin1Char('.'), 0, 0);
    return raw.difference(thousandDevices(stamp)).isEmpty() ? stamp : QString();
}

} // namespace

class TestKillSafety : public QObject
{
    Q_OBJECT

private slots:
    void savesAreWhole_data();
    void savesAreWhole();
    void creationIsWhole();
};

void TestKillSafety::savesAreWhole_data()
{
    QTest::addColumn<QString>("mode");
    QTest::newRow("batch") << QStringLiteral("batch");
    QTest::newRow("import") << QStringLiteral("import");
    QTest::newRow("undo") << QStringLiteral("undo");
}

void TestKillSafety::savesAreWhole()
{
    QFETCH(QString, mode);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("phonebook.db"));
    QStringList found;
    int interrupted = 0;
    for (int round = 0; round < rounds(); ++round) {
        QVERIFY(runAndKill(mode, folder.path(), 100));
        interrupted += QFileInfo::exists(path + QLatin1String("-journal")) ? 1 : 0;
        const RawDatabase raw(path);
        QCOMPARE(raw.value(QStringLiteral("pragma integrity_check")).toString(),
                 QStringLiteral("ok"));
        if (raw.rows().isEmpty()) {
            QVERIFY(found.isEmpty()); // only before the first save was through
            continue;
        }
        found.append(storedStamp(raw));
        QVERIFY2(found.last() == QLatin1String("one") || found.last() == QLatin1String("two"),
                 qPrintable(QStringLiteral("round %1").arg(round)));
    }
    qInfo("%d of %d kills met a save under way; list one was found %d times, list two %d times",
          interrupted, rounds(), found.count(QStringLiteral("one")),
          found.count(QStringLiteral("two")));
    // Otherwise nothing was tested.
    QVERIFY(interrupted > 0);
    QVERIFY(!found.isEmpty());
}

void TestKillSafety::creationIsWhole()
{
    int interrupted = 0;
    for (int round = 0; round < rounds(); ++round) {
        const QTemporaryDir parent;
        QVERIFY(runAndKill(QStringLiteral("create"), parent.path(), 30));
        const QStringList places = QDir(parent.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QVERIFY(!places.isEmpty());
        const QString last = QString::number(places.size() - 1);
        const QString place = parent.filePath(last) + QLatin1Char('/');
        const QString path = place + QLatin1String("phonebook.db");
        interrupted +=
            QFileInfo::exists(path + QLatin1String("-journal")) || QFileInfo(path).size() == 0 ? 1
                                                                                               : 0;
        DBOperator dbOperator(place);
        DataMgr mgr(dbOperator, place);
        QVERIFY2(mgr.openDatabase(), qPrintable(mgr.lastErrorText()));
        mgr.insertContactNode(stampedDevice(QStringLiteral("a")));
        const RawDatabase raw(path);
        QCOMPARE(raw.value(QStringLiteral("pragma integrity_check")).toString(),
                 QStringLiteral("ok"));
        QCOMPARE(raw.difference({stampedDevice(QStringLiteral("a"))}), QString());
    }
    qInfo("%d of %d kills met a creation under way", interrupted, rounds());
    QVERIFY(interrupted > 0);
}

QTEST_GUILESS_MAIN(TestKillSafety)
#include "tst_killsafety.moc"
