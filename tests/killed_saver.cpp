// Changes a stored list of 1,000 devices without end until it is killed: list "one" becomes list
// "two", list "two" becomes list "one".
//   killed_saver batch <folder>    by a batch that replaces every device
//   killed_saver import <folder>   by importing a file in place of the list
//   killed_saver undo <folder>     by taking such a batch back and making it again
//   killed_saver create <folder>   creates one store after the other in new folders 0, 1, 2, ...
#include "TestDevices.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "storage/DatabaseLayer.h"
#include "storage/DeviceBackup.h"
#include "widgets/Modal.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>

#include <cstdio>

namespace {

void tell(const char *what)
{
    std::fputs(what, stdout);
    std::fflush(stdout);
}

bool isListOne(const DataMgr &mgr)
{
    return mgr.devices().size() > 0 &&
           mgr.devices().at(0).info.city.startsWith(QLatin1String("one"));
}

QString listFile(const QString &folder, const QString &stamp)
{
    const QString path = folder + stamp + QLatin1String(".csv");
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(DeviceBackup::csv(thousandDevices(stamp)));
    return path;
}

int changeForEver(const QString &mode, const QString &folder)
{
    Modal::setRunner([](QDialog &dialog) {
        const QList<QPushButton *> buttons = dialog.findChildren<QPushButton *>();
        for (QPushButton *const button : buttons) {
            if (button->text() == QLatin1String("Yes to All"))
                button->click();
        }
        return 0;
    });
    DBOperator dbOperator(folder);
    DataMgr mgr(dbOperator, folder);
    if (!mgr.openDatabase())
        return 1;
    mgr.setSlice(-1);
    mgr.setImportFlag(true);
    mgr.recoverPreviousData();
    const QString files[] = {listFile(folder, QStringLiteral("one")),
                             listFile(folder, QStringLiteral("two"))};
    tell("ready\n");
    int made = 0;
    for (int i = isListOne(mgr) ? 1 : 0;; i = 1 - i) {
        if (mode == QLatin1String("import"))
            mgr.importFile(files[i]);
        else if (mode == QLatin1String("undo") && made++ >= 2)
            made % 2 == 1 ? mgr.undo() : mgr.redo();
        else
            mgr.addContacts(
                thousandDevices(i == 0 ? QStringLiteral("one") : QStringLiteral("two")));
        if (!mgr.isSaved() || isListOne(mgr) != (i == 0))
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
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 64;
    const QString mode = arguments.at(1);
    const QString folder = arguments.at(2) + QLatin1Char('/');
    return mode == QLatin1String("create") ? createForEver(folder) : changeForEver(mode, folder);
}
