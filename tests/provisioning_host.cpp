// The services on a host of the network test. Arguments: the address whose card is chosen, and a
// file with the list of phones. Prints "ready" when they run. When its input ends it switches them
// off; the exit code is 0 only when everything went as it should.

#include "net/NetCardItem.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

#include <QApplication>
#include <QDir>
#include <QRadioButton>
#include <QSocketNotifier>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    registerContactTypes();
    const QStringList arguments = QApplication::arguments();
    const QTemporaryDir temporary;
    const QString folder = temporary.path() + QLatin1Char('/');
    Modal::setRunner([&](QDialog &dialog) {
        const QList<NetCardItem *> cards = dialog.findChildren<NetCardItem *>();
        if (cards.isEmpty())
            qFatal("unexpected: %s", qPrintable(dialog.windowTitle()));
        for (NetCardItem *const card : cards) {
            if (card->ipList().contains(arguments.at(1)))
                card->findChild<QRadioButton *>()->click();
        }
        return QDialog::Accepted;
    });
    DBOperator dbOperator(folder);
    DataMgr dataMgr(dbOperator, folder);
    dataMgr.setSlice(-1);
    if (!QDir::setCurrent(folder) || !dataMgr.openDatabase())
        return 2;
    dataMgr.setImportFlag(true);
    dataMgr.importFile(arguments.at(2));
    if (!dataMgr.startHttpService() || !dataMgr.startPnPServer())
        return 1;
    std::puts("ready");
    std::fflush(stdout);
    const QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &QCoreApplication::quit);
    QApplication::exec();
    const bool areStopped = dataMgr.stopPnPServer() && dataMgr.stopHttpService();
    dataMgr.close();
    return areStopped ? 0 : 1;
}
