#include "dialogs/ContactDialog.h"
#include "tests/WindowFixture.h"
#include "view/ContactView.h"
#include "view/SearchEdit.h"

#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QMovie>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>
#include <QUrl>

class TestMainWindow : public QObject, WindowFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpFolder();
        writeFile(path("language/options.xml"),
                  "<root><AutoStart>0</AutoStart><RecoveryData>1</RecoveryData>"
                  "<AutoHttpd>0</AutoHttpd></root>");
        // Any free port.
        writeFile(path("port.xml"), "<configHttpdPort><useDefault>0</useDefault><port></port>"
                                    "</configHttpdPort>");
    }

    void cleanup() { tearDown(); }

    void deletesAndTakesItBack()
    {
        openWindow();
        for (int i = 1; i <= 3; ++i)
            add(i);
        for (const int noRow : {3, -1})
            m_window->showContactViewDetail(noRow);
        QVERIFY(!part<ContactDialog>()->isVisible());

        auto *const view = part<ContactView>();
        view->setFocus();
        view->setCurrentIndex(view->model()->index(1, 0));
        m_user->answers = QStringList{"No"_s, "Yes"_s};
        QTest::keyClick(view, Qt::Key_Delete);
        QCOMPARE(stored(), "123"_s);
        QVERIFY(m_user->told().contains("02:00:A7:00:00:02"_s));
        QTest::keyClick(view, Qt::Key_Delete);
        QCOMPARE(stored(), "13"_s);

        const auto *const undo = button("undoButton");
        QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(stored(), "123"_s);
        QCOMPARE(view->currentListRow(), 1);
        QCOMPARE(undo->text(), "Redo"_s);
        auto *const box = part<QLineEdit>("searchEdit_1");
        box->setFocus();
        for (const Qt::Key key : {Qt::Key_Z, Qt::Key_Y})
            QTest::keyClick(box, key, Qt::ControlModifier); // these keys undo in the box's text
        QCOMPARE(stored(), "123"_s);
        view->setFocus();
        QTest::keyClick(view, Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(stored(), "13"_s);
    }

    void reportsADamagedDatabaseAndLeavesIt()
    {
        const QByteArray garbage(9000, 'x');
        writeFile(path("phonebook.db"), garbage);
        openWindow();
        QTRY_COMPARE(m_user->boxes.size(), 1);
        QCOMPARE(m_user->takeTitles(), QStringList{"Database Error"_s});
        add(1);
        const QSignalSpy quit(m_window.get(), &MainWindow::globalQuit);
        m_window->close();
        m_window->closeWindow();
        QCOMPARE(quit.size(), 1);
        QCOMPARE(fileContent(path("phonebook.db")), garbage);
    }

    void closingInTheMiddleOfAQuestionEndsCleanly()
    {
        openWindow();
        add(1, "1001"_s);
        const QSignalSpy quit(m_window.get(), &MainWindow::globalQuit);
        m_user->meanwhile = [this] { m_window->closeWindow(); };
        m_user->answers = QStringList{"OK"_s};
        button("tool_httpButton")->click();
        QCOMPARE(quit.count(), 1);
        QVERIFY(m_dataMgr->serverAddresses().isEmpty());

        openWindow();
        m_user->answers = QStringList{"Yes"_s};
        add(1, "too late"_s);
        m_user->meanwhile = {};
        openWindow();
        QCOMPARE(account(0), "1001"_s);
    }

    void comesBackWhereItWas()
    {
        const auto openAgain = [this] {
            if (m_window)
                m_window->close();
            openWindow();
            return m_window->screen()->availableGeometry().contains(m_window->geometry());
        };
        QVERIFY(openAgain());
        const QRect place(40, 50, 640, 400);
        m_window->setGeometry(place);
        QVERIFY(openAgain());
        QCOMPARE(m_window->geometry(), place);
        m_window->showMaximized();
        openAgain();
        QVERIFY(m_window->isMaximized());
        QCOMPARE(m_window->normalGeometry(), place);
        m_window->showNormal();
        m_window->setGeometry(-300, -200, 2000, 1500);
        QVERIFY(openAgain());
        m_window->close();
        writeFile(path("window.xml"), "<root><Geometry>AdnQywAD");
        QVERIFY(openAgain());
    }

    void aDroppedFileIsToBeImported()
    {
        struct Row
        {
            QStringList files; ///< in the folder
            bool isTaken, onATextBox, overABox;
        };
        for (const char *const name : {"a.CSV", "b.csv"})
            writeFile(path(name), "MAC");
        QVERIFY(QDir().mkdir(path("f.csv")));
        for (const Row &row : {Row{{"a.CSV"_s}, true, false, false},
                               {{"a.CSV"_s}, true, true, false},
                               {{"a.CSV"_s}, false, false, true},
                               {{"a.CSV"_s, "b.csv"_s}, false, false, false},
                               {{"f.csv"_s}, false, true, false},
                               {{"port.xml"_s}, false, true, false},
                               {{}, false, false, false}}) {
            openWindow();
            QMimeData dropped;
            QList<QUrl> urls;
            for (const QString &name : row.files)
                urls.append(QUrl::fromLocalFile(m_folder->filePath(name)));
            dropped.setText("what file managers say besides"_s);
            if (!urls.isEmpty())
                dropped.setUrls(urls);
            QDialog box(m_window.get());
            box.setModal(true);
            box.setVisible(row.overABox);
            QWidget *target = m_window.get();
            if (row.onATextBox)
                target = part<SearchEdit>();
            QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction | Qt::MoveAction, &dropped,
                                  Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(target, &enter);
            QCOMPARE(enter.isAccepted(), row.isTaken);
            QDropEvent drop(QPointF(1, 1), Qt::CopyAction | Qt::MoveAction, &dropped,
                            Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(target, &drop);
            QCOMPARE(part("importPage")->isVisible(), row.isTaken);
            QCOMPARE(part<QLineEdit>("importPathLineEdit")->text(),
                     row.isTaken ? urls.first().toLocalFile() : QString());
            QVERIFY(!row.isTaken || drop.dropAction() == Qt::CopyAction);
        }
    }

    void takesTheListIn()
    {
        openWindow();
        add(1, "1001"_s);
        add(3);
        const QString list = path("devices.csv");
        auto *const pathEdit = part<QLineEdit>("importPathLineEdit");
        const auto *const preview = part<QLabel>("importPreview");
        const auto offer = [&](const QByteArray &content) {
            writeFile(list, content);
            m_window->localImport();
            pathEdit->clear();
            pathEdit->setText(list);
        };
        m_window->localImport();
        pathEdit->setText(list);
        button("importBeginButton")->click();
        QCOMPARE(m_user->told(), "Import Box: Please choose correct file to import."_s);
        offer("mine");
        QTRY_VERIFY(preview->text().startsWith("The first line has no column titles"_s));
        button("importBeginButton")->click();
        QCOMPARE(m_user->told(),
                 "Import Box: Import is failed, please check the file format and encoding."_s);
        QCOMPARE(stored(), "13"_s);
        offer("MAC,Primary Account\n02:00:A7:00:00:01,1001\n02:00:A7:00:00:02,0012\n");
        const QString numbers = "UTF-8, 2 rows: 1 new, 1 in place of listed devices. "
                                "Listed devices that are not in the file and %1: 1."_s;
        QTRY_COMPARE(preview->text(), numbers.arg("go"_s));
        auto *const clearList = part<QAbstractButton>("clearListCheckBox");
        clearList->click();
        QCOMPARE(preview->text(), numbers.arg("stay"_s));
        QCOMPARE(button("importBeginButton")->accessibleDescription(), preview->text());
        clearList->click();
        QTest::keyClick(pathEdit, Qt::Key_Return);
        QCOMPARE(m_user->told(), QString());
        QCOMPARE(stored(), "12"_s);
        QCOMPARE(account(1), "0012"_s);
        QCOMPARE(QDir(path("backup")).entryList(QDir::Files).size(), 1);
    }

    void eachReportOfAStormIsShownOnce()
    {
        openWindow();
        const auto *const text = part<QPlainTextEdit>();
        QStringList reports;
        const auto report = [&] {
            reports.append(QString::number(reports.size()));
            m_window->onHTTPDMsg(reports.last());
        };
        const auto shown = [&] {
            return text->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        };
        for (int i = 0; i < 100; ++i)
            report();
        QTRY_COMPARE(shown(), reports);
        report();
        QTRY_COMPARE(shown(), reports);
    }

    void aLongImportMovesAndEndsBeforeTheWindow()
    {
        constexpr int count = 30000;
        QByteArray list = "MAC,Random Port\n";
        for (int i = 0; i < count; ++i)
            list += "02:00:A7:" + QByteArray::number(i) + ",1\n";
        writeFile(path("long.csv"), list);
        m_slice = 15;
        openWindow();
        const auto *const wheel = part<QMovie>();
        const QSignalSpy quits(m_window.get(), &MainWindow::globalQuit);
        QSet<int> framesOfTheSave;
        QTimer often;
        connect(&often, &QTimer::timeout, &often, [&] {
            // Every device is listed: only the save goes on.
            if (m_dataMgr->worker().isIdle() || m_dataMgr->devices().size() < count)
                return;
            framesOfTheSave.insert(wheel->currentFrameNumber());
            m_window->close();
            QCOMPARE(quits.size(), 0);
        });
        often.start(5);
        m_window->localImport();
        part<QLineEdit>("importPathLineEdit")->setText(path("long.csv"));
        button("importBeginButton")->click();
        QTRY_COMPARE(quits.size(), 1);
        QVERIFY(framesOfTheSave.size() >= 2);
        QCOMPARE(wheel->state(), QMovie::NotRunning);
        QVERIFY(m_user->boxes.isEmpty());

        openWindow();
        QTRY_COMPARE(countText(), "Total device:%1"_s.arg(count));
    }

private:
    /// Saves a new device whose address ends in that number.
    void add(int number, const QString &account = QString()) const
    {
        addDevice("02:00:A7:00:00:0%1"_s.arg(number), account);
    }
    QString account(int row) const { return m_dataMgr->devices().at(row).info.first_account; }
    QString countText() const { return part<QLabel>("countLabel")->text(); }
    /// The numbers of the stored devices, in the order of the list.
    QString stored() const
    {
        QString numbers;
        const auto devices = m_dbOperator->load();
        for (const ContactInfo &device : devices)
            numbers += device.mac.back();
        return numbers;
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
