#include "app/ExportPage.h"
#include "app/ImportPage.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

class TestPathPages : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void texts();
    void requests_data();
    void requests();
    void clearListSaysWhatItDoes();

private:
    QPushButton *button(const char *name) const
    {
        return m_window->findChild<QPushButton *>(QLatin1String(name));
    }

    std::unique_ptr<QWidget> m_window;
    ImportPage *m_import = nullptr;
    ExportPage *m_export = nullptr;
};

void TestPathPages::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(960, 600);
    m_import = new ImportPage(m_window.get());
    m_export = new ExportPage(m_window.get());
    m_window->show();
    QApplication::setActiveWindow(m_window.get());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void TestPathPages::cleanup()
{
    m_window.reset();
}

void TestPathPages::texts()
{
    const auto shown = [](const SlidePage &page) {
        QStringList texts;
        const auto labels = page.findChildren<QLabel *>();
        for (const QLabel *label : labels)
            texts.append(label->text());
        const auto buttons = page.findChildren<QAbstractButton *>();
        for (const QAbstractButton *button : buttons)
            texts.append(button->text());
        return texts.join(QLatin1Char('|'));
    };
    QCOMPARE(shown(*m_import),
             QStringLiteral("Import file|The devices of the file replace the present list.|"
                            "Select File|Import|Cancel|Clear list"));
    QCOMPARE(shown(*m_export), QStringLiteral("Export file|Export to|Select path|Export|Cancel"));
}

void TestPathPages::requests_data()
{
    QTest::addColumn<QString>("page");
    QTest::newRow("import") << "import";
    QTest::newRow("export") << "export";
}

void TestPathPages::requests()
{
    QFETCH(QString, page);

    auto *const path = m_window->findChild<PathPage *>(page + QLatin1String("Page"));
    QSignalSpy selects(path, &PathPage::selectRequested);
    QSignalSpy begins(path, &PathPage::beginRequested);
    QSignalSpy aborts(path, &PathPage::abortRequested);
    path->slideIn();
    QTRY_COMPARE(path->shownPart(), 1.0);
    const auto click = [&](const char *name) {
        QTest::mouseClick(button((page + QLatin1String(name)).toLatin1().constData()),
                          Qt::LeftButton);
        return QVector<int>{selects.size(), begins.size(), aborts.size()};
    };
    QCOMPARE(click("SelectButton"), QVector<int>({1, 0, 0}));
    QCOMPARE(click("BeginButton"), QVector<int>({1, 1, 0}));
    QCOMPARE(click("CancelButton"), QVector<int>({1, 1, 1}));
    // The page leaves it to the window whether it closes.
    QVERIFY(path->isOpen());
    QTest::keyClick(path->findChild<QLineEdit *>(), Qt::Key_Return);
    QCOMPARE(begins.size(), 2);
}

void TestPathPages::clearListSaysWhatItDoes()
{
    auto *const box = m_window->findChild<QCheckBox *>(QStringLiteral("clearListCheckBox"));
    const auto *const hint = m_window->findChild<QLabel *>(QStringLiteral("clearListHintLabel"));
    QVERIFY(!m_import->clearList());
    m_import->slideIn();
    QTRY_COMPARE(m_import->shownPart(), 1.0);
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(10, box->height() / 2));
    QVERIFY(m_import->clearList());
    QCOMPARE(hint->text(),
             QStringLiteral("The devices of the file are added to the present list."));
    QCOMPARE(box->accessibleDescription(), hint->text());
}

QTEST_MAIN(TestPathPages)
#include "tst_pathpages.moc"
