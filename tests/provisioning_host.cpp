// The program on a host of the network test: its real window over a temporary folder, used as an
// administrator uses it. Arguments: the address whose card is chosen, and a file with the list of
// telephones. Prints "ready" when the services run. When its input ends it switches them off and
// leaves; the exit code is 0 only when every button did what it says.

#include "app/MainWindow.h"
#include "net/NetCardItem.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>

#include <cstdio>
#include <thread>

namespace {

bool failed = false;

void say(const QString &text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

void complain(const QString &text)
{
    say(QLatin1String("unexpected: ") + text);
    failed = true;
}

/// Chooses the card with this address; whatever else comes up is a failure of the run.
int answer(const QDialog &dialog, const QString &address)
{
    const QList<NetCardItem *> cards = dialog.findChildren<NetCardItem *>();
    for (NetCardItem *const card : cards) {
        if (card->ipList().contains(address))
            card->findChild<QRadioButton *>()->click();
    }
    if (cards.isEmpty())
        complain(dialog.windowTitle());
    return cards.isEmpty() ? QDialog::Rejected : QDialog::Accepted;
}

/// Clicks the button, which has to read `expected` then.
void click(const MainWindow &window, const char *name, const char *expected)
{
    auto *const button = window.findChild<QPushButton *>(QLatin1String(name));
    button->click();
    if (button->text() != QLatin1String(expected))
        complain(QLatin1String(name) + QLatin1String(" reads ") + button->text());
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    registerContactTypes();
    const QStringList arguments = QApplication::arguments();
    QTemporaryDir temporary;
    const QString folder = temporary.path() + QLatin1Char('/');
    if (arguments.size() != 3 || !QDir::setCurrent(folder) ||
        !QFile::link(QStringLiteral(VL_SOURCE_DIR "/resource"), folder + QLatin1String("resource")))
        return 2;

    Modal::setRunner([&](QDialog &dialog) { return answer(dialog, arguments.at(1)); });
    DBOperator dbOperator(folder);
    DataMgr dataMgr(dbOperator, folder);
    dataMgr.setSlice(-1);
    MainWindow window(dataMgr, folder);
    window.show();
    dataMgr.setImportFlag(true);
    dataMgr.importFile(arguments.at(2));
    click(window, "tool_httpButton", "&Close HTTPD");
    click(window, "tool_pnpButton", "&Disable PNP Server");
    if (failed || dataMgr.serverAddresses().value(0) != arguments.at(1))
        return 1;
    say(QStringLiteral("ready"));
    std::thread input([&] {
        while (std::getchar() != EOF) {
        }
        QMetaObject::invokeMethod(&application, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    QApplication::exec();
    input.join();

    click(window, "tool_pnpButton", "&Enable PNP Server");
    click(window, "tool_httpButton", "&Open HTTPD");
    window.close();
    return failed ? 1 : 0;
}
