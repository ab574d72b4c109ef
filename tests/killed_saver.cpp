// Saves without end until it is killed.
//   killed_saver save <folder>     alternates two lists of 1,000 devices in the store of the folder
//   killed_saver create <folder>   creates one store after the other in new folders 0, 1, 2, ...
#include "TestDevices.h"
#include "storage/DBOperator.h"
#include "storage/DatabaseLayer.h"
#include "storage/ListSaver.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

namespace {

void tell(const char *what)
{
    std::fputs(what, stdout);
    std::fflush(stdout);
}

int saveForEver(const QString &folder)
{
    const QList<ContactInfo> lists[] = {thousandDevices(QStringLiteral("one")),
                                        thousandDevices(QStringLiteral("two"))};
    DBOperator dbOperator(folder);
    DeviceList list;
    ListSaver saver(list, dbOperator, folder);
    QList<ContactInfo> stored;
    if (!saver.open() || !saver.load(stored))
        return 1;
    list.assign(stored);
    saver.markLoaded(stored);
    tell("ready\n");
    for (int i = !stored.isEmpty() && stored.first().city.startsWith(QLatin1String("one"));; ++i) {
        list.assign(lists[i % 2]);
        if (!saver.save(ListSaver::Ask::Never))
            return 2;
    }
}

int createForEver(const QString &folder)
{
    for (int i = 0;; ++i) {
        const QString place = folder + QString::number(i) + QLatin1Char('/');
        QDir().mkpath(place);
        DBOperator dbOperator(place);
        if (!dbOperator.database()->openDatabase())
            return 1;
        if (i == 0)
            tell("ready\n");
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 64;
    const QString folder = arguments.at(2) + QLatin1Char('/');
    return arguments.at(1) == QLatin1String("create") ? createForEver(folder) : saveForEver(folder);
}
