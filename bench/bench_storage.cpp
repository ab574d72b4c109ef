// Measures a save, a load, a snapshot of the list and a phone's document, by the list's length.
//   bench_storage [folder]      the folder chooses the disk
#include "Measure.h"
#include "model/ExportType.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdio>

namespace {

struct Program
{
    explicit Program(const QString &parent)
        : m_folder(parent + QStringLiteral("/bench-XXXXXX"))
        , m_dbOperator(path())
        , mgr(m_dbOperator, path())
    {
    }
    QString path() const { return m_folder.path() + QLatin1Char('/'); }

private:
    QTemporaryDir m_folder;
    DBOperator m_dbOperator;

public:
    DataMgr mgr;
};

void measureSaves(const QString &parent, int count)
{
    Program program(parent);
    if (!program.mgr.openDatabase())
        return;
    Samples first;
    const QList<ContactInfo> devices = benchDevices(count);
    first.measure([&] { program.mgr.addContacts(devices); });

    Samples edits;
    for (int i = 0; i < 9; ++i) {
        ContactInfo edited = benchDevice(i);
        edited.id = i + 1;
        edited.city = QStringLiteral("edited");
        edits.measure([&] { program.mgr.updateContact(edited); });
    }
    Samples unchanged;
    for (int i = 0; i < 1000; ++i)
        unchanged.measure([&] { program.mgr.save(); });
    Samples loads;
    for (int i = 0; i < 3; ++i)
        loads.measure([&] { program.mgr.recoverPreviousData(); });
    std::printf("%7d devices: added and saved %8.1f ms, one edited and all saved %8.1f ms, "
                "nothing to save %5.2f us, loaded %8.1f ms\n",
                count, first.median() / 1000, edits.median() / 1000, unchanged.median(),
                loads.median() / 1000);
}

void measureSnapshots(int count)
{
    constexpr int calls = 100000;
    DeviceList list;
    list.assign(benchDevices(count));
    qint64 seen = 0;
    Samples all;
    all.measure([&] {
        for (int i = 0; i < calls; ++i)
            seen += list.snapshot().size();
    });
    Samples changes;
    for (int i = 0; i < 21; ++i) {
        const DeviceListSnapshot held = list.snapshot();
        const ContactInfo edited = benchDevice(i);
        changes.measure([&] { list.replaceAt(i, edited); });
    }
    std::printf("%7d devices: snapshot %6.1f ns, first change after one %8.1f us\n", count,
                all.median() * 1000 / calls, changes.median());
    if (seen != qint64(count) * calls)
        std::printf("the snapshots were wrong\n");
}

/// Returns the median time, in microseconds, for a document that need not be written again.
double measureDocuments(const QString &parent, int count)
{
    constexpr int phones = 100;
    Program program(parent);
    if (!program.mgr.openDatabase())
        return 0;
    program.mgr.addContacts(benchDevices(count));
    const QString folder = program.path() + QStringLiteral("HTTPD");
    QDir().mkpath(folder);
    Samples written;
    Samples unchanged;
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < phones; ++i) {
            const QString name = benchFileName(benchDevice(i * (count / phones)));
            (round == 0 ? written : unchanged).measure([&] {
                program.mgr.exportDevices(DeskPhoneXml, QStringLiteral("UTF-8"), name, folder);
            });
        }
    }
    std::printf("%7d devices: document written: median %7.1f us, p99 %7.1f us; "
                "unchanged: median %7.1f us, p99 %7.1f us\n",
                count, written.median(), written.p99(), unchanged.median(), unchanged.p99());
    return unchanged.median();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const QString parent = QCoreApplication::arguments().value(1, QDir::tempPath());
    for (const int count : {100, 10000, 100000})
        measureSaves(parent, count);
    for (const int count : {100, 10000, 100000})
        measureSnapshots(count);
    const double few = measureDocuments(parent, 100);
    const double many = measureDocuments(parent, 10000);
    std::printf("10,000 devices against 100: %.2f times the time for an unchanged document\n",
                many / few);
    return 0;
}
