// Measures in the real window how long a user with a long list waits for a batch from the dialog, a
// key in that dialog or in a search box, a change and the start. Also measures the memory of the
// list.
//   bench_list [folder]         the folder chooses the disk
// Without a display, set QT_QPA_PLATFORM=offscreen. With one, the times include painting on it.
#include "ListFile.h"
#include "Measure.h"
#include "app/Appearance.h"
#include "app/MainWindow.h"
#include "dialogs/ContactsDialog.h"
#include "dialogs/IpLine.h"
#include "model/FreeMemory.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "view/ContactView.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <memory>

namespace {

/// The program with its data in a folder of its own, and its resources beside the executable.
class Program
{
public:
    explicit Program(const QString &parent)
        : m_folder(parent + QStringLiteral("/bench-XXXXXX"))
    {
        QDir(m_folder.path()).mkdir(QStringLiteral("language"));
        QFile options(m_folder.filePath(QStringLiteral("language/options.xml")));
        if (options.open(QIODevice::WriteOnly))
            options.write("<root><AutoStart>0</AutoStart><RecoveryData>1</RecoveryData>"
                          "<AutoHttpd>0</AutoHttpd></root>");
    }

    /// Starts the program and waits until the window answers keys.
    void open()
    {
        const QString folder = m_folder.path() + QLatin1Char('/');
        dbOperator = std::make_unique<DBOperator>(folder);
        dataMgr = std::make_unique<DataMgr>(*dbOperator, folder);
        window = std::make_unique<MainWindow>(*dataMgr, folder);
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get()))
            std::printf("the window never showed\n");
        QTest::keyClick(window.get(), Qt::Key_Shift);
        QCoreApplication::processEvents();
    }
    /// Starts the program and waits for the whole list.
    void start()
    {
        open();
        settle();
    }
    void stop()
    {
        window.reset();
        dataMgr.reset();
        dbOperator.reset();
    }
    /// Waits until nothing is left to do or to paint.
    void settle() const
    {
        while (!dataMgr->worker().isIdle())
            QCoreApplication::processEvents();
        window->repaint();
        QCoreApplication::processEvents();
    }
    int rowsShown() const { return window->findChild<ContactView *>()->model()->rowCount(); }

private:
    QTemporaryDir m_folder;

public:
    std::unique_ptr<DBOperator> dbOperator;
    std::unique_ptr<DataMgr> dataMgr;
    std::unique_ptr<MainWindow> window;
};

/// Notes when a view is first painted with at least this many rows.
class FirstPaint : public QObject
{
public:
    explicit FirstPaint(int rows)
        : m_rows(rows)
    {
        qApp->installEventFilter(this);
        m_timer.start();
    }
    double milliseconds() const { return m_milliseconds; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *const view = qobject_cast<ContactView *>(watched->parent());
        if (event->type() == QEvent::Paint && m_milliseconds < 0 && view &&
            watched == view->viewport() && view->model()->rowCount() >= m_rows)
            m_milliseconds = double(m_timer.nsecsElapsed()) / 1e6;
        return QObject::eventFilter(watched, event);
    }

private:
    int m_rows;
    QElapsedTimer m_timer;
    double m_milliseconds = -1;
};

void measureBatch(const QString &parent, int listed, int count)
{
    Program program(parent);
    program.start();
    program.dataMgr->addContacts(benchDevices(listed));
    auto *const dialog = program.window->findChild<ContactsDialog *>();
    Samples batches;
    double longest = 0;
    for (int round = 0; round < 5; ++round) {
        program.window->constructNewFiles();
        const auto fill = [dialog](const char *name, const QString &text) {
            dialog->findChild<QLineEdit *>(QLatin1String(name))->setText(text);
        };
        fill("productCountLineEdit", QString::number(count));
        fill("firstSipUserIdLineEdit", QStringLiteral("1000"));
        dialog->findChild<IpLine *>()->setText(
            QStringLiteral("02:00:A7:%1:00:00").arg(0x80 + round, 2, 16, QLatin1Char('0')));
        program.settle();
        const FirstPaint shown(listed + (round + 1) * count);
        batches.measure([&] {
            dialog->findChild<QPushButton *>(QStringLiteral("saveButton"))->click();
            program.settle();
        });
        if (shown.milliseconds() < 0)
            std::printf("the batch was not shown: %d rows\n", program.rowsShown());
        longest = std::max(longest, shown.milliseconds());
    }
    std::printf("%7d devices: a batch of %d more shows after %7.1f ms at the longest, is saved "
                "after %7.1f ms\n",
                listed, count, longest, batches.median() / 1000);
}

/// Measures a key in the batch dialog while it previews `listed` devices, all of them in the list.
void measureTyping(const QString &parent, int listed)
{
    Program program(parent);
    program.start();
    QList<ContactInfo> devices = benchDevices(listed);
    for (ContactInfo &device : devices)
        device.mac = device.mac.toUpper();
    program.dataMgr->addContacts(devices);
    program.window->constructNewFiles();
    auto *const dialog = program.window->findChild<ContactsDialog *>();
    dialog->findChild<QLineEdit *>(QStringLiteral("productCountLineEdit"))
        ->setText(QString::number(listed));
    dialog->findChild<IpLine *>()->setText(devices.first().mac);
    auto *const step = dialog->findChild<QLineEdit *>(QStringLiteral("macStepLineEdit"));
    step->clear();
    program.settle();
    Samples keys;
    for (int round = 0; round < 20; ++round) {
        for (const auto key : {Qt::Key_1, Qt::Key_Backspace}) {
            keys.measure([&] {
                QTest::keyClick(step, key);
                program.settle();
            });
        }
    }
    QTest::keyClick(step, Qt::Key_1);
    program.settle();
    std::printf("%7d devices: a key in the dialog for as many, all listed: median %6.1f ms, "
                "longest %6.1f ms (\"%s\")\n",
                listed, keys.median() / 1000, keys.quantile(1) / 1000,
                qPrintable(dialog->findChild<QLabel *>(QStringLiteral("batchPreview"))->text()));
}

/// Changes single devices in a long list. Measures how long the window is blocked, and how long it
/// takes until the list is saved.
void measureChanges(const QString &parent, int listed)
{
    Program program(parent);
    program.start();
    program.dataMgr->addContacts(benchDevices(listed));
    program.settle();
    const auto measure = [&](const char *what, auto &&change) {
        Samples saves;
        double longest = 0;
        for (int round = 0; round < 5; ++round) {
            const Pulse pulse;
            saves.measure([&] {
                change(listed / 2 + round);
                program.settle();
            });
            QCoreApplication::processEvents();
            longest = std::max(longest, pulse.longestGap());
        }
        std::printf("%7d devices: %s: longest time without an event %6.1f ms, saved after %7.1f "
                    "ms\n",
                    listed, what, longest, saves.median() / 1000);
    };
    measure("one edited", [&](int row) {
        ContactInfo edited = program.dataMgr->devices().at(row).info;
        edited.id = row + 1;
        edited.city = QStringLiteral("Shelbyville");
        program.dataMgr->updateContact(edited);
    });
    measure("one's MAC edited", [&](int row) {
        ContactInfo edited = program.dataMgr->devices().at(row).info;
        edited.id = row + 1;
        edited.mac[0] = QLatin1Char('F');
        program.dataMgr->updateContact(edited);
    });
    measure("one deleted", [&](int row) { program.dataMgr->deleteContactAt(row); });
    measure("one added",
            [&](int row) { program.dataMgr->insertContactNode(benchDevice(listed + row)); });
    const auto import = [&](const QString &path) {
        program.dataMgr->setImportFlag(true);
        program.dataMgr->importFile(path);
    };
    const ListFile same(parent, benchDevices(listed));
    QList<ContactInfo> moved = benchDevices(listed);
    for (ContactInfo &device : moved)
        device.city = QStringLiteral("Shelbyville");
    const ListFile other(parent, moved);
    measure("the same imported", [&](int) { import(same.path()); });
    measure("another list imported",
            [&](int row) { import(row % 2 == 0 ? other.path() : same.path()); });
}

void measureKeys(const QString &parent, int listed)
{
    Program program(parent);
    program.start();
    program.dataMgr->addContacts(benchDevices(listed));
    program.settle();
    struct Search
    {
        const char *what;
        int box;
        const char *keys;
        int found;
    };
    for (const Search &search :
         {Search{"MAC", 0, "02:00:a7:00:12", 256},
          Search{"server that all have", 2, "sip.example", listed},
          Search{"user that none has", 4, "x999", 0}, Search{"number", 5, "4321", -1}}) {
        auto *const box =
            program.window->findChild<QLineEdit *>(QStringLiteral("searchEdit_%1").arg(search.box));
        box->setFocus();
        program.settle();
        Samples keys;
        for (const char *key = search.keys; *key != '\0'; ++key) {
            keys.measure([&] {
                QTest::keyClick(box, *key);
                program.settle();
            });
        }
        const int found = program.rowsShown();
        while (!box->text().isEmpty()) {
            keys.measure([&] {
                QTest::keyClick(box, Qt::Key_Backspace);
                program.settle();
            });
        }
        std::printf("%7d devices: a key in the search for a %s: median %6.1f ms, longest %6.1f ms "
                    "(%d found)\n",
                    listed, search.what, keys.median() / 1000, keys.quantile(1) / 1000, found);
        if (search.found >= 0 && found != search.found)
            std::printf("the search was wrong\n");
    }
}

/// Paints a list with texts far longer than anybody can read.
void measureLongTexts(const QString &parent, int characters)
{
    Program program(parent);
    program.start();
    constexpr int cells = 30;
    QList<ContactInfo> devices = benchDevices(cells);
    for (ContactInfo &device : devices)
        device.company = QString(characters, QLatin1Char('w'));
    program.dataMgr->addContacts(devices);
    program.window->resize(1920, 1300);
    program.settle();
    auto *const view = program.window->findChild<ContactView *>();
    if (view->rowAt(view->viewport()->height() - 1) >= 0)
        std::printf("not all of the list was shown\n");
    Samples paints;
    for (int round = 0; round < 20; ++round)
        paints.measure([view] { view->viewport()->repaint(); });
    std::printf("%7d cells of %d characters: painted in %.1f ms, at the longest %.1f ms\n", cells,
                characters, paints.median() / 1000, paints.quantile(1) / 1000);
}

/// Returns the milliseconds from the start of the program until its window answers keys.
double measureStarts(const QString &parent, int stored)
{
    Program program(parent);
    program.start();
    program.dataMgr->addContacts(benchDevices(stored));
    program.settle();
    program.stop();
    Samples usable;
    Samples complete;
    for (int round = 0; round < 7; ++round) {
        complete.measure([&] {
            usable.measure([&] { program.open(); });
            program.settle();
        });
        if (program.rowsShown() != stored)
            std::printf("the start was wrong\n");
        program.stop();
    }
    std::printf("%7d devices stored: the window answers keys after %7.1f ms, shows all of them "
                "after %7.1f ms\n",
                stored, usable.median() / 1000, complete.median() / 1000);
    return usable.median() / 1000;
}

/// The memory that the process cannot give back; 0 where the system has no such number.
qint64 bytesHeld()
{
    giveBackFreeMemory();
    QFile file(QStringLiteral("/proc/self/statm"));
    constexpr qint64 pageSize = 4096;
    return file.open(QIODevice::ReadOnly)
               ? file.readAll().split(' ').value(1).toLongLong() * pageSize
               : 0;
}

void measureMemory(const QString &parent, int stored)
{
    Program program(parent);
    program.start();
    const qint64 without = bytesHeld();
    program.dataMgr->addContacts(benchDevices(stored));
    program.settle();
    program.stop();
    program.start();
    std::printf("%7d devices read from the store: %lld bytes each beyond an empty program\n",
                stored, static_cast<long long>((bytesHeld() - without) / stored));
}

/// Measures undo and redo of Delete All, and the memory that fifty small changes hold.
void measureUndo(const QString &parent, int listed)
{
    Program program(parent);
    program.start();
    program.dataMgr->addContacts(benchDevices(listed));
    program.settle();
    const auto longestGap = [&](const auto &change) {
        const Pulse pulse;
        change();
        program.settle();
        QCoreApplication::processEvents();
        return pulse.longestGap();
    };
    longestGap([&] { program.dataMgr->deleteAllContacts(); });
    double undone = 0;
    double redone = 0;
    for (int round = 0; round < 3; ++round) {
        undone = std::max(undone, longestGap([&] { program.dataMgr->undo(); }));
        redone = std::max(redone, longestGap([&] { program.dataMgr->redo(); }));
    }
    program.dataMgr->undo();
    program.settle();
    const qint64 before = bytesHeld();
    for (int i = 0; i < 50; ++i) {
        ContactInfo edited = program.dataMgr->devices().at(i * 1000).info;
        edited.id = i * 1000 + 1;
        (i % 2 == 0 ? edited.city : edited.mac)[0] = QLatin1Char('F');
        program.dataMgr->updateContact(edited);
        program.settle();
    }
    std::printf("%7d devices: all deleted and that taken back: longest time without an event %6.1f "
                "ms, made again %6.1f ms; 50 edits hold %.1f MB more\n",
                listed, undone, redone, double(bytesHeld() - before) / 1e6);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    QDir::setCurrent(QStringLiteral(VL_RUN_FOLDER));
    registerContactTypes();
    applyAppearance(application);
    const QString parent = QCoreApplication::arguments().value(1, QDir::tempPath());
    measureMemory(parent, 100000);
    measureBatch(parent, 0, 10000);
    measureBatch(parent, 100000, 10000);
    measureTyping(parent, 100000);
    measureChanges(parent, 100000);
    measureUndo(parent, 100000);
    measureKeys(parent, 100000);
    measureLongTexts(parent, 100000);
    const double none = measureStarts(parent, 0);
    const double many = measureStarts(parent, 100000);
    std::printf("100,000 devices against none: %.2f times the time of a start\n", many / none);
    return 0;
}
