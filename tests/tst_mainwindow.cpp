#include "dialogs/ContactDialog.h"
#include "tests/TestDevices.h"
#include "tests/WindowFixture.h"
#include "view/ContactView.h"
#include "view/SearchEdit.h"
#include "widgets/UserGuide.h"

#include <QAction>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QMovie>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScreen>
#include <QSet>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

namespace {

const char anyFreePort[] = "<configHttpdPort><useDefault>0</useDefault><port></port>"
                           "</configHttpdPort>";

} // namespace

class TestMainWindow : public QObject, WindowFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { registerContactTypes(); }
    void init();
    void cleanup() { tearDown(); }

    void aKeyOpensTheNewDeviceDialog();
    void aNewDeviceIsListedCountedAndStored();
    void editingChangesTheDeviceOnlyWhenSaved();
    void deletesOneAndAll();
    void reportsADamagedDatabaseAndLeavesIt();
    void opensAndClosesHttpd();
    void servicesThatAreNotOpened();
    void closingInTheMiddleOfAQuestionEndsCleanly();
    void closesOnce();
    void comesBackWhereItWas();
    void pagesSayWhatTheyDo();
    void aDroppedFileIsToBeImported_data();
    void aDroppedFileIsToBeImported();
    void takesTheListOutAndIn();
    void aLongImportMovesAndEndsBeforeTheWindow();
    void helpGoesOnWhereItWasClosed();

private:
    QString countText() const;
    /// Saves a new device whose address ends in that number.
    void addDevice(int number, const QString &account = QString());
    /// The numbers of the stored devices, in the order of the list.
    QString storedNumbers();
    QByteArray fetch(quint16 port, const QByteArray &fileName);
};

void TestMainWindow::init()
{
    setUpFolder();
    writeFile(m_folder->filePath(QStringLiteral("language/options.xml")),
              "<root><AutoStart>0</AutoStart><RecoveryData>1</RecoveryData>"
              "<AutoHttpd>0</AutoHttpd></root>");
    writeFile(m_folder->filePath(QStringLiteral("port.xml")), anyFreePort);
}

QString TestMainWindow::countText() const
{
    return m_window->findChild<QLabel *>(QStringLiteral("countLabel"))->text();
}

void TestMainWindow::addDevice(int number, const QString &account)
{
    ContactInfo contact;
    contact.mac = QStringLiteral("02:00:A7:00:00:0%1").arg(number);
    contact.first_account = account;
    m_window->onContactDialogAddFinished(contact);
}

QString TestMainWindow::storedNumbers()
{
    QString numbers;
    const auto contacts = m_dbOperator->load();
    for (const ContactInfo &contact : contacts)
        numbers += contact.mac.back();
    return numbers;
}

QByteArray TestMainWindow::fetch(quint16 port, const QByteArray &fileName)
{
    QTcpSocket phone;
    phone.connectToHost(QStringLiteral("127.0.0.1"), port);
    bool closed = false;
    connect(&phone, &QTcpSocket::connected, &phone,
            [&] { phone.write("GET /" + fileName + " HTTP/1.0\r\nUser-Agent: KTP2135\r\n\r\n"); });
    connect(&phone, &QTcpSocket::disconnected, &phone, [&] { closed = true; });
    [&] { QTRY_VERIFY(closed); }();
    return phone.readAll();
}

void TestMainWindow::aKeyOpensTheNewDeviceDialog()
{
    openWindow();
    auto *const dialog = m_window->findChild<ContactDialog *>();
    // The menu entry and the button carry the same keys; together they must not cancel out.
    QTest::keyClick(m_window.get(), Qt::Key_N, Qt::ControlModifier);
    QTRY_VERIFY(dialog->isVisible());
    QCOMPARE(dialog->windowTitle(), QStringLiteral("New Device"));
}

void TestMainWindow::aNewDeviceIsListedCountedAndStored()
{
    openWindow();
    QCOMPARE(countText(), QStringLiteral("Total device:0"));
    addDevice(1, QStringLiteral("1001"));
    addDevice(2, QStringLiteral("1002"));
    QCOMPARE(countText(), QStringLiteral("Total device:2"));
    QCOMPARE(m_window->findChild<ContactView *>()->model()->rowCount(), 2);
    QCOMPARE(storedNumbers(), QStringLiteral("12"));

    m_answers = QStringList{QStringLiteral("No")};
    addDevice(1, QStringLiteral("other"));
    QCOMPARE(m_shown.size(), 1);
    QCOMPARE(m_shown.first().title, QStringLiteral("Replace action"));
    QCOMPARE(m_shown.first().text,
             QStringLiteral("MAC:02:00:A7:00:00:01 has already exist,do you want to replace it?"));
    QCOMPARE(m_shown.first().buttons, QStringList({QStringLiteral("Yes"), QStringLiteral("No")}));
    QCOMPARE(m_dataMgr->devices().at(0).info.first_account, QStringLiteral("1001"));

    m_answers = QStringList{QStringLiteral("Yes")};
    addDevice(1, QStringLiteral("other"));
    openWindow();
    QCOMPARE(countText(), QStringLiteral("Total device:2"));
    QCOMPARE(m_window->findChild<ContactView *>()->model()->rowCount(), 2);
    QCOMPARE(m_dataMgr->devices().at(0).info.first_account, QStringLiteral("other"));
}

void TestMainWindow::editingChangesTheDeviceOnlyWhenSaved()
{
    openWindow();
    addDevice(1, QStringLiteral("1001"));
    addDevice(2, QStringLiteral("1002"));
    auto *const dialog = m_window->findChild<ContactDialog *>();
    auto *const account = dialog->findChild<QLineEdit *>(QStringLiteral("firstAccountLineEdit"));
    const auto edit = [&] {
        m_window->showContactViewDetail(1);
        QVERIFY(dialog->isVisible());
        QCOMPARE(account->text(), QStringLiteral("1002"));
        account->setText(QStringLiteral("changed"));
    };
    edit();
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Overview & Edit"));
    dialog->close();
    QCOMPARE(m_dataMgr->devices().at(1).info.first_account, QStringLiteral("1002"));
    edit();
    dialog->doSaveAction();
    QVERIFY(!dialog->isVisible());
    QCOMPARE(m_dataMgr->devices().at(1).info.first_account, QStringLiteral("changed"));
    QCOMPARE(m_dbOperator->load().at(1).first_account, QStringLiteral("changed"));
    QCOMPARE(m_dataMgr->devices().at(0).info.first_account, QStringLiteral("1001"));

    // Rows that are no rows any more.
    m_window->showContactViewDetail(2);
    m_window->showContactViewDetail(-1);
    QVERIFY(!dialog->isVisible());
}

void TestMainWindow::deletesOneAndAll()
{
    openWindow();
    for (int i = 1; i <= 4; ++i)
        addDevice(i);
    m_window->deleteOneContact(1);
    QCOMPARE(storedNumbers(), QStringLiteral("134"));
    QVERIFY(m_shown.isEmpty());

    auto *const view = m_window->findChild<ContactView *>();
    view->selectRow(2);
    m_window->onDeleteContact();
    QCOMPARE(storedNumbers(), QStringLiteral("13"));
    QCOMPARE(view->model()->rowCount(), 2);

    const auto *const undo = m_window->findChild<QPushButton *>(QStringLiteral("undoButton"));
    QVERIFY(undo->accessibleDescription().startsWith(QLatin1String("Deleted 02:")));
    QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(storedNumbers(), QStringLiteral("134"));
    QCOMPARE(view->currentListRow(), 2);
    QCOMPARE(undo->text(), QStringLiteral("Redo"));
    auto *const box = m_window->findChild<QLineEdit *>(QStringLiteral("searchEdit_1"));
    box->setFocus();
    for (const Qt::Key key : {Qt::Key_Z, Qt::Key_Y})
        QTest::keyClick(box, key, Qt::ControlModifier); // are the text's there
    QCOMPARE(storedNumbers(), QStringLiteral("134"));
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(storedNumbers(), QStringLiteral("13"));

    m_answers = QStringList{QStringLiteral("No")};
    button("tool_deleteAllBtn")->click();
    QCOMPARE(m_shown.last().title, QStringLiteral("Delete All Devices"));
    QCOMPARE(m_shown.last().text, QStringLiteral("Do you want to delete all devices?"));
    QCOMPARE(storedNumbers(), QStringLiteral("13"));
    m_answers = QStringList{QStringLiteral("Yes")};
    button("tool_deleteAllBtn")->click();
    QVERIFY(storedNumbers().isEmpty());
    QCOMPARE(countText(), QStringLiteral("Total device:0"));
}

void TestMainWindow::reportsADamagedDatabaseAndLeavesIt()
{
    const QByteArray garbage(9000, 'x');
    const QString path = m_folder->filePath(QStringLiteral("phonebook.db"));
    writeFile(path, garbage);
    openWindow();
    QTRY_COMPARE(m_shown.size(), 1);
    QCOMPARE(m_shown.first().title, QStringLiteral("Database Error"));
    addDevice(1, QStringLiteral("1001"));
    addDevice(2, QStringLiteral("1002"));
    QCOMPARE(m_shown.size(), 2);
    QCOMPARE(m_shown.last().title, QStringLiteral("Save Error"));
    QCOMPARE(countText(), QStringLiteral("Total device:2"));
    // An import's copies give their room back before the last attempt to keep the list.
    const QString copy = m_folder->filePath(QStringLiteral("tmp1.csv"));
    writeFile(copy, "x");
    bool hasCopy = true;
    m_whileAsking = [&] { hasCopy = QFile::exists(copy); };
    m_window->closeWindow();
    m_whileAsking = {};
    QVERIFY(!hasCopy);
    QCOMPARE(fileContent(path), garbage);
}

void TestMainWindow::opensAndClosesHttpd()
{
    openWindow();
    addDevice(1, QStringLiteral("1001"));
    auto *const report = m_window->findChild<QPlainTextEdit *>(QStringLiteral("reportBox"));
    for (int round = 0; round < 2; ++round) {
        m_answers = QStringList{QStringLiteral("OK")};
        button("tool_httpButton")->click();
        if (m_dataMgr->serverAddresses().isEmpty())
            QSKIP("this machine has no network card with an IPv4 address");
        QCOMPARE(button("tool_httpButton")->text(), QStringLiteral("&Close HTTPD"));
        QCOMPARE(button("tool_httpButton")->toolTip(), QStringLiteral("Close the HTTPD server"));
        QVERIFY(report->isVisible());
        const quint16 port = m_dataMgr->serverPort();
        const QString start = report->toPlainText();
        QVERIFY2(start.endsWith(QStringLiteral("Port:%1\nHTTPD server is running.").arg(port)),
                 qPrintable(start));

        const QByteArray answer = fetch(port, "cfg0200a7000001.xml");
        QVERIFY2(answer.startsWith("HTTP/1.0 200 Ok\r\n"), answer.constData());
        QVERIFY(answer.contains("<P270>1001</P270>"));
        // Once each, however often the service was started before.
        const QString asked = start + QStringLiteral("\n\nOne device request cfg.\nProduct:KTP\n"
                                                     "FileName:cfg0200a7000001.xml\n");
        QTRY_VERIFY(report->toPlainText().endsWith(
            QStringLiteral(" 127.0.0.1: sent %1 bytes")
                .arg(QLocale(QLocale::English).toString(answer.size()))));
        QVERIFY(report->toPlainText().startsWith(asked));
        QCOMPARE(report->toPlainText().mid(asked.size()).count(QLatin1Char('\n')), 0);

        button("tool_httpButton")->click();
        QCOMPARE(button("tool_httpButton")->text(), QStringLiteral("&Open HTTPD"));
        QVERIFY(!report->isVisible());
        QTcpSocket late;
        late.connectToHost(QStringLiteral("127.0.0.1"), port);
        QVERIFY(!late.waitForConnected(500));
    }
}

void TestMainWindow::servicesThatAreNotOpened()
{
    openWindow();
    m_answers = QStringList{QStringLiteral("Cancel"), QStringLiteral("OK")};
    button("tool_httpButton")->click();
    QCOMPARE(button("tool_httpButton")->text(), QStringLiteral("&Open HTTPD"));
    QVERIFY(m_dataMgr->serverAddresses().isEmpty());
    button("tool_pnpButton")->click();
    QCOMPARE(m_shown.last().title, QStringLiteral("Enable PNP Server"));
    QCOMPARE(m_shown.last().text, QStringLiteral("PNP service requires HTTPD enabled, "
                                                 "please open HTTPD service first!"));
    QCOMPARE(button("tool_pnpButton")->text(), QStringLiteral("&Enable PNP Server"));
    QVERIFY(!m_dataMgr->isPnPServerRunning());
}

void TestMainWindow::closingInTheMiddleOfAQuestionEndsCleanly()
{
    openWindow();
    addDevice(1, QStringLiteral("1001"));
    QSignalSpy quit(m_window.get(), &MainWindow::globalQuit);
    m_whileAsking = [this] { m_window->closeWindow(); };
    m_answers = QStringList{QStringLiteral("OK")};
    button("tool_httpButton")->click();
    QCOMPARE(quit.count(), 1);
    QVERIFY(m_dataMgr->serverAddresses().isEmpty());

    openWindow();
    m_answers = QStringList{QStringLiteral("Yes")};
    addDevice(1, QStringLiteral("too late"));
    m_whileAsking = {};
    openWindow();
    QCOMPARE(m_dataMgr->devices().at(0).info.first_account, QStringLiteral("1001"));
}

void TestMainWindow::closesOnce()
{
    openWindow();
    for (const char *const name : {"tmp.csv", "tmp1.csv", "tmp2.csv", "other.csv"})
        writeFile(m_folder->filePath(QLatin1String(name)), "x");
    QSignalSpy quit(m_window.get(), &MainWindow::globalQuit);
    m_window->close();
    m_window->closeWindow();
    QCOMPARE(quit.count(), 1);
    QCOMPARE(QDir(m_folder->path()).entryList({QStringLiteral("*.csv")}),
             QStringList{QStringLiteral("other.csv")});
}

void TestMainWindow::comesBackWhereItWas()
{
    const auto openAgain = [this] {
        if (m_window)
            m_window->close();
        openWindow();
    };
    const auto isOnTheScreen = [this] {
        return m_window->screen()->availableGeometry().contains(m_window->geometry());
    };
    openAgain();
    QVERIFY(isOnTheScreen());
    const QRect place(40, 50, 640, 400);
    m_window->setGeometry(place);
    openAgain();
    QCOMPARE(m_window->geometry(), place);
    m_window->showMaximized();
    openAgain();
    QVERIFY(m_window->isMaximized());
    QCOMPARE(m_window->normalGeometry(), place);
    m_window->showNormal();
    m_window->setGeometry(-300, -200, 2000, 1500);
    openAgain();
    QVERIFY(isOnTheScreen());
    m_window->close();
    writeFile(m_folder->filePath(QStringLiteral("window.xml")), "<root><Geometry>AdnQywAD");
    openAgain();
    QVERIFY(isOnTheScreen());
}

void TestMainWindow::pagesSayWhatTheyDo()
{
    openWindow();
    const auto texts = [this](const char *name) {
        const auto *const page = m_window->findChild<QWidget *>(QLatin1String(name));
        QStringList shown;
        const auto labels = page->findChildren<QLabel *>();
        for (const QLabel *const label : labels)
            shown.append(label->text());
        const auto buttons = page->findChildren<QAbstractButton *>();
        for (const QAbstractButton *const one : buttons)
            shown.append(one->text());
        return shown.join(QLatin1Char('|'));
    };
    QCOMPARE(texts("exportPage"),
             QStringLiteral("Export file|Export to|Select path|Export|Cancel"));
    QCOMPARE(
        texts("importPage"),
        QStringLiteral("Import file|The devices of the file replace the present list, which is "
                       "kept in the folder backup/.|Choose a file to see here what its import "
                       "will do.|Select File|Import|Cancel|Clear list"));
    m_window->findChild<QAbstractButton *>(QStringLiteral("clearListCheckBox"))->click();
    QVERIFY(texts("importPage").contains(QStringLiteral("are added to the present list.")));
}

void TestMainWindow::aDroppedFileIsToBeImported_data()
{
    QTest::addColumn<QStringList>("names"); // of what is dropped, in the folder
    QTest::addColumn<bool>("isTaken");
    QTest::addColumn<bool>("onATextBox");
    QTest::addColumn<bool>("overABox");
    const QString list = QStringLiteral("a.CSV");
    QTest::newRow("a list") << QStringList(list) << true << false << false;
    QTest::newRow("on a text box") << QStringList(list) << true << true << false;
    QTest::newRow("while a box asks") << QStringList(list) << false << false << true;
    QTest::newRow("two lists") << QStringList({list, QStringLiteral("b.csv")}) << false << false
                               << false;
    QTest::newRow("a folder") << QStringList(QStringLiteral("f.csv")) << false << true << false;
    QTest::newRow("another file") << QStringList(QStringLiteral("port.xml")) << false << true
                                  << false;
    QTest::newRow("none there") << QStringList(QStringLiteral("no.csv")) << false << false << false;
    QTest::newRow("a text") << QStringList() << false << false << false;
}

void TestMainWindow::aDroppedFileIsToBeImported()
{
    QFETCH(QStringList, names);
    QFETCH(bool, isTaken);
    QFETCH(bool, onATextBox);
    QFETCH(bool, overABox);
    writeFile(m_folder->filePath(QStringLiteral("a.CSV")), "MAC");
    writeFile(m_folder->filePath(QStringLiteral("b.csv")), "MAC");
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("f.csv")));
    openWindow();
    QMimeData dropped;
    QList<QUrl> urls;
    for (const QString &name : qAsConst(names))
        urls.append(QUrl::fromLocalFile(m_folder->filePath(name)));
    dropped.setText(QStringLiteral("what file managers say besides"));
    if (!urls.isEmpty())
        dropped.setUrls(urls);
    auto *const page = m_window->findChild<QWidget *>(QStringLiteral("importPage"));
    const auto *const pathEdit =
        m_window->findChild<QLineEdit *>(QStringLiteral("importPathLineEdit"));

    QDialog box(m_window.get());
    box.setModal(true);
    box.setVisible(overABox);
    QWidget *target = m_window.get();
    if (onATextBox)
        target = m_window->findChild<SearchEdit *>();
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction | Qt::MoveAction, &dropped, Qt::LeftButton,
                          Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    QCOMPARE(enter.isAccepted(), isTaken);
    QDropEvent drop(QPointF(1, 1), Qt::CopyAction | Qt::MoveAction, &dropped, Qt::LeftButton,
                    Qt::NoModifier);
    QCoreApplication::sendEvent(target, &drop);
    QCOMPARE(page->isVisible(), isTaken);
    QCOMPARE(pathEdit->text(), isTaken ? urls.first().toLocalFile() : QString());
    QVERIFY(!isTaken || drop.dropAction() == Qt::CopyAction);
}

void TestMainWindow::takesTheListOutAndIn()
{
    openWindow();
    addDevice(1, QStringLiteral("1001"));
    addDevice(2, QStringLiteral("0012"));
    const QString target = m_folder->filePath(QStringLiteral("devices.csv"));
    const auto path = [this](const char *name) {
        return m_window->findChild<QLineEdit *>(QLatin1String(name));
    };

    m_window->localExport();
    button("exportBeginButton")->click();
    QCOMPARE(m_shown.last().text, QStringLiteral("Please choose correct path to export."));
    path("exportPathLineEdit")->setText(m_folder->path());
    button("exportBeginButton")->click();
    QCOMPARE(m_shown.last().text, QStringLiteral("File has been exported successfully!"));
    QVERIFY(QFile::exists(target));

    // Not replaced when the user would rather not.
    writeFile(target, "mine");
    m_window->localExport();
    path("exportPathLineEdit")->setText(m_folder->path());
    m_answers = QStringList{QStringLiteral("No")};
    button("exportBeginButton")->click();
    QCOMPARE(m_shown.last().title, QStringLiteral("Replace action"));
    QCOMPARE(m_shown.last().text,
             target + QStringLiteral("has already exist,do you want to replace it?"));
    QCOMPARE(fileContent(target), QByteArray("mine"));

    // Which is no device list: what is listed stays.
    m_window->localImport();
    button("importBeginButton")->click();
    QCOMPARE(m_shown.last().text, QStringLiteral("Please choose correct file to import."));
    path("importPathLineEdit")->setText(target);
    const auto *const preview = m_window->findChild<QLabel *>(QStringLiteral("importPreview"));
    QTRY_VERIFY(preview->text().startsWith(QLatin1String("The first line has no column titles")));
    button("importBeginButton")->click();
    QCOMPARE(m_shown.last().title, QStringLiteral("Import Box"));
    QCOMPARE(m_shown.last().text,
             QStringLiteral("Import is failed, please check the file format and encoding."));
    QCOMPARE(countText(), QStringLiteral("Total device:2"));

    m_window->localExport();
    path("exportPathLineEdit")->setText(m_folder->path());
    m_answers = QStringList{QStringLiteral("Yes")};
    button("exportBeginButton")->click();
    m_window->deleteOneContact(0);
    addDevice(3);
    m_window->localImport();
    path("importPathLineEdit")->setText(target);
    const QString numbers = QStringLiteral("UTF-8, 2 rows: 1 new, 1 in place of listed devices. ");
    QTRY_COMPARE(preview->text(),
                 numbers + QStringLiteral("Listed devices that are not in the file and go: 1."));
    auto *const clearList =
        m_window->findChild<QAbstractButton *>(QStringLiteral("clearListCheckBox"));
    clearList->click();
    QCOMPARE(preview->text(),
             numbers + QStringLiteral("Listed devices that are not in the file and stay: 1."));
    clearList->click();
    const int boxes = m_shown.size();
    QTest::keyClick(path("importPathLineEdit"), Qt::Key_Return);
    QCOMPARE(m_shown.size(), boxes);
    QCOMPARE(storedNumbers(), QStringLiteral("12"));
    QCOMPARE(m_dataMgr->devices().at(1).info.first_account, QStringLiteral("0012"));
    QCOMPARE(QDir(m_folder->filePath(QStringLiteral("backup"))).entryList(QDir::Files).size(), 1);
}

void TestMainWindow::aLongImportMovesAndEndsBeforeTheWindow()
{
    constexpr int count = 30000;
    QByteArray list = "MAC,Random Port\n";
    for (int i = 0; i < count; ++i)
        list += "02:00:A7:" + QByteArray::number(i) + ",1\n";
    const QString path = m_folder->filePath(QStringLiteral("long.csv"));
    writeFile(path, list);
    m_slice = 15;
    openWindow();
    const auto *const wheel = m_window->findChild<QMovie *>();
    const QSignalSpy quits(m_window.get(), &MainWindow::globalQuit);
    QSet<int> framesOfTheSave;
    QTimer often;
    connect(&often, &QTimer::timeout, &often, [&] {
        // Every device is listed: what goes on is the save.
        if (m_dataMgr->worker().isIdle() || m_dataMgr->devices().size() < count)
            return;
        framesOfTheSave.insert(wheel->currentFrameNumber());
        m_window->close();
        QCOMPARE(quits.size(), 0);
    });
    often.start(5);
    m_window->localImport();
    m_window->findChild<QLineEdit *>(QStringLiteral("importPathLineEdit"))->setText(path);
    button("importBeginButton")->click();
    QTRY_COMPARE(quits.size(), 1);
    QVERIFY(framesOfTheSave.size() >= 2);
    QCOMPARE(wheel->state(), QMovie::NotRunning);
    QVERIFY(m_shown.isEmpty());

    openWindow();
    QTRY_COMPARE(countText(), QStringLiteral("Total device:%1").arg(count));
}

void TestMainWindow::helpGoesOnWhereItWasClosed()
{
    openWindow();
    const auto guides = [] {
        QList<UserGuide *> found;
        const auto widgets = QApplication::topLevelWidgets();
        for (QWidget *const widget : widgets)
            found.append(qobject_cast<UserGuide *>(widget));
        found.removeAll(nullptr);
        return found;
    };
    QAction *const help =
        m_window->findChild<QMenu *>(QStringLiteral("HelpMenu"))->actions().constFirst();
    QVERIFY(guides().isEmpty());
    help->trigger();
    QCOMPARE(guides().size(), 1);
    UserGuide *const guide = guides().constFirst();
    QVERIFY(guide->isVisible());
    guide->rightPressed();
    guide->close();
    QVERIFY(m_window->isVisible());
    help->trigger();
    QCOMPARE(guides(), QList<UserGuide *>{guide});
    QVERIFY(guide->isVisible());
    QCOMPARE(guide->currentPage(), 1);
    m_window.reset();
    QVERIFY(guides().isEmpty());
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
