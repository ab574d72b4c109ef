// The program on a host of the network test: its real window over a temporary folder, used as an
// administrator uses it. Arguments: the address whose card is chosen, and how many desk and
// cordless telephones are in the list, whose MACs count up from 02:00:A7:00:00:01 and
// 02:00:A7:01:00:01. Prints "ready" when the services run. When its input ends it switches them
// off and leaves; the exit code is 0 only when every button did what it says.

#include "app/MainWindow.h"
#include "model/ContactInfo.h"
#include "net/NetCardItem.h"
#include "net/NetCardSelectDialog.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QRadioButton>
#include <QSocketNotifier>
#include <QTemporaryDir>

#include <unistd.h>

#include <cstdio>

namespace {

void say(const QString &text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

QList<ContactInfo> devices(int family, const QString &product, int count)
{
    QList<ContactInfo> result;
    for (int i = 1; i <= count; ++i) {
        const QString bare = QStringLiteral("0200a7%1%2")
                                 .arg(family, 2, 16, QLatin1Char('0'))
                                 .arg(i, 4, 16, QLatin1Char('0'));
        QString mac = bare.toUpper();
        for (int at = 10; at > 0; at -= 2)
            mac.insert(at, QLatin1Char(':'));
        ContactInfo device;
        device.mac = mac;
        device.product = product;
        device.sip_server = QStringLiteral("sip.example.com");
        device.sip_user_id = QLatin1String("user-") + bare;
        device.password = QStringLiteral("<&\">");
        device.city = QStringLiteral("Zürich");
        result.append(device);
    }
    return result;
}

/// Chooses the card with this address; whatever else comes up is a failure of the run.
int answer(QDialog &dialog, const QString &address, bool &failed)
{
    if (qobject_cast<NetCardSelectDialog *>(&dialog)) {
        const QList<NetCardItem *> items = dialog.findChildren<NetCardItem *>();
        for (NetCardItem *const item : items) {
            if (item->ipList().contains(address))
                item->findChild<QRadioButton *>()->click();
        }
        const QList<QPushButton *> buttons = dialog.findChildren<QPushButton *>();
        for (QPushButton *const button : buttons) {
            if (button->text() == QLatin1String("OK"))
                button->click();
        }
        return dialog.result();
    }
    const auto *const box = qobject_cast<QMessageBox *>(&dialog);
    say(QLatin1String("unexpected: ") + dialog.windowTitle() + QLatin1String(": ") +
        (box ? box->text() : QString()));
    failed = true;
    return QDialog::Rejected;
}

/// Clicks the button and tells whether it reads `expected` then.
bool click(const MainWindow &window, const char *name, const QString &expected)
{
    auto *const button = window.findChild<QPushButton *>(QLatin1String(name));
    button->click();
    if (button->text() == expected)
        return true;
    say(QStringLiteral("unexpected: %1 reads %2").arg(QLatin1String(name), button->text()));
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    registerContactTypes();
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 4) {
        say(QStringLiteral("usage: provisioning_host ADDRESS DESK CORDLESS"));
        return 2;
    }
    QTemporaryDir temporary;
    const QString folder = temporary.path() + QLatin1Char('/');
    if (!temporary.isValid() || !QDir::setCurrent(folder) ||
        !QFile::link(QStringLiteral(VL_SOURCE_DIR "/resource"), folder + QLatin1String("resource")))
        return 2;

    bool failed = false;
    Modal::setRunner([&](QDialog &dialog) { return answer(dialog, arguments.at(1), failed); });
    DBOperator dbOperator(folder);
    DataMgr dataMgr(dbOperator, folder);
    dataMgr.setSlice(-1);
    MainWindow window(dataMgr, folder);
    window.show();
    dataMgr.addContacts(devices(0, QStringLiteral("KTP21XX"), arguments.at(2).toInt()) +
                        devices(1, QStringLiteral("DK71X"), arguments.at(3).toInt()));

    failed = !click(window, "tool_httpButton", QStringLiteral("&Close HTTPD")) ||
             !click(window, "tool_pnpButton", QStringLiteral("&Disable PNP Server")) || failed;
    if (failed || dataMgr.serverAddresses().value(0) != arguments.at(1))
        return 1;
    say(QStringLiteral("ready"));

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [] {
        char byte = 0;
        if (::read(STDIN_FILENO, &byte, 1) <= 0)
            QCoreApplication::quit();
    });
    QApplication::exec();

    const bool disabled = click(window, "tool_pnpButton", QStringLiteral("&Enable PNP Server"));
    const bool closed = click(window, "tool_httpButton", QStringLiteral("&Open HTTPD"));
    window.close();
    return disabled && closed && !failed ? 0 : 1;
}
