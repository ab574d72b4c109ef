// Measures an import, from the file to the saved list, and the sqlite3 shell's import of the same
// file into the same table.
//   bench_import [devices [rounds [folder]]]      the folder chooses the disk
#include "ListFile.h"
#include "Measure.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "storage/DatabaseLayer.h"
#include "storage/ImportLook.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <cstdio>

namespace {

/// The processor seconds of this program or of those that it started. Unlike elapsed time, they do
/// not grow with other load on the machine.
double processorTime(__rusage_who_t whose)
{
    rusage usage = {};
    getrusage(whose, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

struct Cost
{
    /// Calls `work` and adds its cost; `whose` says which processes spend the processor time.
    template <typename Work>
    void measure(__rusage_who_t whose, Work &&work)
    {
        const double before = processorTime(whose);
        byTheClock.measure(work);
        processor += processorTime(whose) - before;
    }

    Samples byTheClock;
    double processor = 0;
};

/// Imports as the program does. Returns the longest time without an event, in milliseconds.
double importInProgram(const QString &list, const QString &parent, int count, Cost &cost)
{
    const QTemporaryDir folder(parent + QStringLiteral("/bench-XXXXXX"));
    const QString path = folder.path() + QLatin1Char('/');
    DBOperator dbOperator(path);
    DataMgr mgr(dbOperator, path);
    if (!mgr.openDatabase())
        return -1;
    const Pulse pulse;
    cost.measure(RUSAGE_SELF, [&] {
        QEventLoop loop;
        QObject::connect(&mgr.worker(), &ListWorker::idle, &loop, &QEventLoop::quit);
        mgr.importFile(list);
        if (!mgr.worker().isIdle())
            loop.exec();
    });
    QCoreApplication::processEvents(); // an event ends the last gap too
    if (!mgr.isSaved() || mgr.database()->countContacts() != count)
        std::printf("the import failed\n");
    mgr.close();
    return pulse.longestGap();
}

/// Measures how long the window is blocked while the program looks at the file before the import,
/// with an empty list and with a list of `count` devices.
void lookAhead(const QString &list, const QString &parent, int count)
{
    const QTemporaryDir folder(parent + QStringLiteral("/bench-XXXXXX"));
    DeviceList devices;
    devices.assign(benchDevices(count));
    for (const bool isEmpty : {true, false}) {
        const DeviceList none;
        ImportLook look(isEmpty ? none : devices, folder.path() + QLatin1Char('/'));
        const Pulse pulse;
        Samples looks;
        looks.measure([&] {
            QEventLoop loop;
            QObject::connect(&look, &ImportLook::changed, &loop, [&] {
                if (look.outlook().state != ImportOutlook::State::Looking)
                    loop.quit();
            });
            look.look(list);
            loop.exec();
        });
        QCoreApplication::processEvents();
        std::printf("%7d devices: looked at in %8.1f ms (new %d, listed %d); longest time without "
                    "an event %6.1f ms\n",
                    count, looks.median() / 1000, look.outlook().added, look.outlook().replacing,
                    pulse.longestGap());
    }
}

/// The shell warns of each line, which lacks two columns of the table; the warnings are dropped.
void importInShell(const QString &list, const QString &parent, int count, Cost &cost)
{
    const QTemporaryDir folder(parent + QStringLiteral("/bench-XXXXXX"));
    const QString path = folder.path() + QLatin1Char('/');
    DBOperator dbOperator(path);
    if (!dbOperator.database()->openDatabase())
        return;
    const QString file = dbOperator.database()->filePath();
    dbOperator.database()->closeDatabase();
    QProcess shell;
    shell.setStandardErrorFile(QProcess::nullDevice());
    cost.measure(RUSAGE_CHILDREN, [&] {
        shell.start(QStringLiteral("sqlite3"),
                    {file, QStringLiteral(".mode csv"),
                     QStringLiteral(".import --skip 1 \"%1\" contact1").arg(list)});
        shell.waitForFinished(-1);
    });
    dbOperator.database()->openDatabase();
    if (dbOperator.database()->countContacts() != count)
        std::printf("the shell's import failed\n");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const QStringList arguments = QCoreApplication::arguments();
    const int count = arguments.value(1, QStringLiteral("100000")).toInt();
    const int rounds = arguments.value(2, QStringLiteral("5")).toInt();
    const QString parent = arguments.value(3, QDir::tempPath());
    const ListFile file(parent, benchDevices(count));
    const QString list = file.path();
    const bool hasShell = !QStandardPaths::findExecutable(QStringLiteral("sqlite3")).isEmpty();
    if (!hasShell)
        std::printf("without the sqlite3 shell there is nothing to compare with\n");

    Cost program;
    Cost shell;
    double gap = 0;
    // They take turns, so that the disk and other load on the machine affect both alike.
    for (int round = 0; round < rounds; ++round) {
        gap = std::max(gap, importInProgram(list, parent, count, program));
        if (hasShell)
            importInShell(list, parent, count, shell);
    }
    lookAhead(list, parent, count);
    std::printf("%7d devices, median of %d: imported and saved %8.1f ms, processor %8.1f ms; "
                "longest time without an event %6.1f ms\n",
                count, rounds, program.byTheClock.median() / 1000,
                program.processor * 1000 / rounds, gap);
    if (hasShell)
        std::printf("                sqlite3 .import %8.1f ms, processor %8.1f ms; "
                    "ratio %.2f, processor %.2f\n",
                    shell.byTheClock.median() / 1000, shell.processor * 1000 / rounds,
                    program.byTheClock.median() / shell.byTheClock.median(),
                    program.processor / shell.processor);
    return 0;
}
