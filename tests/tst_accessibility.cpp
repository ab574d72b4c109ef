// Whether the windows can be used by keyboard, by ear and on every screen, in both languages: each
// is opened as a user opens it and looked at through what Qt tells a screen reader, with the Tab
// key, and by the places of what it shows.
#include "app/Appearance.h"
#include "app/ReportBox.h"
#include "net/NetCardSelectDialog.h"
#include "tests/Geometry.h"
#include "tests/WindowFixture.h"
#include "view/ContactModel.h"
#include "view/ContactView.h"
#include "widgets/UserGuide.h"

#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QRegularExpression>
#include <QScrollArea>

namespace {

using Widgets = QList<QWidget *>;

QAccessibleInterface *toldOf(const QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
}

bool hasLabel(const QWidget *widget)
{
    return !toldOf(widget)->relations(QAccessible::Label).isEmpty();
}

QString nameOf(const QWidget *widget)
{
    QAccessibleInterface *const told = toldOf(widget);
    const auto labels = told->relations(QAccessible::Label);
    return labels.isEmpty() ? told->text(QAccessible::Name)
                            : labels.first().first->text(QAccessible::Name);
}

/// For the message of a failed check, which is made of one that succeeds as well.
QByteArray describe(const QWidget *widget)
{
    if (!widget)
        return {};
    return QByteArray(widget->metaObject()->className()) + " \"" + widget->objectName().toUtf8() +
           '"';
}

QByteArray describe(const Widgets &widgets)
{
    QByteArray text;
    for (const QWidget *const widget : widgets)
        text += "\n  " + describe(widget);
    return text;
}

/// The enabled widgets on screen that the keyboard can reach, in no order.
Widgets stops(const QWidget &window)
{
    Widgets found;
    const auto widgets = window.findChildren<QWidget *>();
    for (QWidget *const widget : widgets) {
        if (widget->isVisibleTo(&window) && widget->isEnabled() &&
            (widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy() &&
            widget->window() == window.window())
            found.append(widget);
    }
    return found;
}

/// What stands for a widget in the layout of its window: the area that it scrolls in, or itself.
QWidget *representative(const QWidget &window, QWidget *widget)
{
    QWidget *outermost = widget;
    for (QWidget *above = widget; above != &window; above = above->parentWidget()) {
        if (qobject_cast<QScrollArea *>(above))
            outermost = above;
    }
    return outermost;
}

/// Top to bottom, and left to right within a line: what begins above another's middle and reaches
/// below it is on one line with it. What scrolls is read to its end before what follows it.
Widgets inReadingOrder(const QWidget &window, const Widgets &widgets)
{
    QHash<QWidget *, Widgets> within;
    for (QWidget *const widget : widgets)
        within[representative(window, widget)].append(widget);
    Widgets outer = within.keys();

    const auto place = [&window](const QWidget *widget) {
        return QRect(widget->mapTo(&window, QPoint()), widget->size());
    };
    std::sort(outer.begin(), outer.end(), [&](const QWidget *a, const QWidget *b) {
        return place(a).center().y() < place(b).center().y();
    });
    for (auto line = outer.begin(); line != outer.end();) {
        const auto end = std::find_if(line, outer.end(), [&](const QWidget *widget) {
            return place(widget).center().y() > place(*line).bottom();
        });
        std::sort(line, end, [&](const QWidget *a, const QWidget *b) {
            return place(a).left() < place(b).left();
        });
        line = end;
    }

    Widgets ordered;
    for (QWidget *const one : qAsConst(outer)) {
        const auto *const area = qobject_cast<const QScrollArea *>(one);
        ordered += area ? inReadingOrder(*area->widget(), within.value(one)) : Widgets{one};
    }
    return ordered;
}

/// Where one key leads, from `first` on until it comes back there.
Widgets walk(QWidget *first, Qt::Key key)
{
    constexpr int tooMany = 100;
    Widgets walked;
    first->setFocus(Qt::TabFocusReason);
    for (QWidget *at = first; at && walked.size() < tooMany; at = QApplication::focusWidget()) {
        if (at == first && !walked.isEmpty())
            break;
        walked.append(at);
        QTest::keyClick(at, key);
    }
    return walked;
}

/// Every text that a node and those below it tell, with the tool tips.
void collectTexts(QAccessibleInterface *node, QStringList &texts)
{
    if (!node || node->state().invisible)
        return;
    for (const auto kind : {QAccessible::Name, QAccessible::Description, QAccessible::Help})
        texts.append(node->text(kind));
    if (const auto *const widget = qobject_cast<const QWidget *>(node->object()))
        texts << widget->toolTip() << widget->statusTip() << widget->windowTitle();
    if (const auto *const edit = qobject_cast<const QLineEdit *>(node->object()))
        texts.append(edit->placeholderText());
    if (const auto *const box = qobject_cast<const QComboBox *>(node->object())) {
        for (int i = 0; i < box->count(); ++i)
            texts.append(box->itemText(i));
    }
    for (int i = 0; i < node->childCount(); ++i)
        collectTexts(node->child(i), texts);
}

} // namespace

class TestAccessibility;
/// Opens a window as a user does.
using Opener = QWidget *(*)(TestAccessibility &);
Q_DECLARE_METATYPE(Opener)

class TestAccessibility : public QObject, WindowFixture
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { setUpFolder(); }
    void cleanup();

    void everythingHasItsPlace_data() { windows(); }
    void everythingHasItsPlace();
    void boxesFitTheScreen();
    void everyStopHasANameOfItsOwn_data() { windows(); }
    void everyStopHasANameOfItsOwn();
    void tabGoesAsOneReads_data() { windows(); }
    void tabGoesAsOneReads();
    void aChineseScreenIsChinese_data() { windows(); }
    void aChineseScreenIsChinese();
    void aCellTellsItsColumnAndItsText();
    void menusAndMnemonics();
    void theKeyDeleteAsksFirst();

private:
    static void windows();
    QWidget *open(const QString &language = QStringLiteral("en"));
    void openIn(const QString &language);
    void addDevices();
    QWidget *part(const char *name) const
    {
        return m_window->findChild<QWidget *>(QLatin1String(name));
    }
    /// Takes a window that has no place in the main window.
    QWidget *showAlone(std::unique_ptr<QWidget> window)
    {
        m_alone = std::move(window);
        m_alone->show();
        return m_alone.get();
    }

    std::unique_ptr<QWidget> m_alone;
};

void TestAccessibility::initTestCase()
{
    registerContactTypes();
    QDir::setCurrent(QStringLiteral(VL_SOURCE_DIR));
    applyAppearance(*qApp);
}

void TestAccessibility::cleanup()
{
    m_alone.reset();
    tearDown();
}

void TestAccessibility::windows()
{
    QTest::addColumn<Opener>("opener");
    const auto row = [](const char *name, Opener opener) { QTest::newRow(name) << opener; };
    row("empty list", [](TestAccessibility &t) -> QWidget * { return t.m_window.get(); });
    row("list and report", [](TestAccessibility &t) -> QWidget * {
        t.m_window->findChild<ReportBox *>()->show();
        t.addDevices();
        return t.m_window.get();
    });
    row("import page", [](TestAccessibility &t) {
        t.m_window->localImport();
        return t.part("importPage");
    });
    row("export page", [](TestAccessibility &t) {
        t.m_window->localExport();
        return t.part("exportPage");
    });
    row("new device", [](TestAccessibility &t) {
        t.m_window->constructNewFile();
        return QApplication::activeModalWidget();
    });
    row("new device in full", [](TestAccessibility &t) {
        t.m_window->constructNewFile();
        t.button("showAdvanceButton")->click();
        return QApplication::activeModalWidget();
    });
    row("new devices", [](TestAccessibility &t) {
        t.m_window->constructNewFiles();
        return QApplication::activeModalWidget();
    });
    row("card choice", [](TestAccessibility &t) {
        auto chooser = std::make_unique<NetCardSelectDialog>();
        chooser->setNetCards({{QStringLiteral("eth0"), true, {QStringLiteral("192.0.2.1")}},
                              {QStringLiteral("eth1"), true, {}}});
        return t.showAlone(std::move(chooser));
    });
    row("port dialog", [](TestAccessibility &t) {
        t.m_window->configHttpdPortOption();
        return t.part("portDialog");
    });
    row("user guide", [](TestAccessibility &t) -> QWidget * {
        t.m_window->showUserGuide();
        const auto all = QApplication::topLevelWidgets();
        const auto guide = std::find_if(all.begin(), all.end(), [](const QWidget *widget) {
            return qobject_cast<const UserGuide *>(widget);
        });
        return guide == all.end() ? nullptr : *guide;
    });
    // Their words are Qt's own, and come from its catalogue.
    row("standard buttons", [](TestAccessibility &t) {
        auto box = std::make_unique<QMessageBox>();
        box->setWindowTitle(t.m_window->windowTitle());
        box->setStandardButtons(QMessageBox::Ok | QMessageBox::Save | QMessageBox::Cancel |
                                QMessageBox::Yes | QMessageBox::No | QMessageBox::Retry);
        return t.showAlone(std::move(box));
    });
}

void TestAccessibility::openIn(const QString &language)
{
    writeFile(m_folder->filePath(QStringLiteral("language/config.xml")),
              "<root><Language>" + language.toUtf8() + "</Language></root>");
    const QDir catalogues(QStringLiteral(VL_CATALOGUE_DIR));
    const QStringList files = catalogues.entryList({QStringLiteral("*.qm")});
    for (const QString &file : files)
        QFile::link(catalogues.filePath(file),
                    m_folder->filePath(QStringLiteral("language/") + file));
    openWindow();
}

/// The window of this data row, in front and with the keyboard.
QWidget *TestAccessibility::open(const QString &language)
{
    openIn(language);
    const QFETCH(Opener, opener);
    QWidget *const opened = opener(*this);
    [opened] {
        QVERIFY(opened);
        opened->activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), opened->window());
    }();
    return opened;
}

void TestAccessibility::addDevices()
{
    for (const char *const mac : {"02:00:A7:00:00:01", "02:00:A7:00:00:02"}) {
        ContactInfo contact;
        contact.mac = QLatin1String(mac);
        contact.product = QStringLiteral("KTP16XX");
        m_window->onContactDialogAddFinished(contact);
    }
}

/// At the scale that the process is started with.
void TestAccessibility::everythingHasItsPlace()
{
    for (const QSize &pixels : {QSize(1024, 600), QSize(1366, 768), QSize(1920, 1080)}) {
        if (pixels.width() == 1024 && qApp->devicePixelRatio() > 1)
            continue; // is not what such a screen is set to
        Geometry::useScreen(pixels);
        for (const char *const language : {"en", "zh"}) {
            const QWidget *const window = open(QLatin1String(language));
            QCoreApplication::processEvents();
            const QString faults = Geometry::faults(*window);
            QVERIFY2(faults.isEmpty(), qPrintable(QStringLiteral("%1, %2 pixels wide:%3")
                                                      .arg(QLatin1String(language))
                                                      .arg(pixels.width())
                                                      .arg(faults)));
            m_alone.reset();
        }
    }
}

void TestAccessibility::boxesFitTheScreen()
{
    Geometry::useScreen(QSize(1366, 768));
    QString faults;
    m_whileAsking = [&faults] {
        const auto all = QApplication::topLevelWidgets();
        for (QWidget *const box : all) {
            if (qobject_cast<QMessageBox *>(box) || box->inherits("QFileDialog")) {
                box->show();
                faults += Geometry::faults(*box);
            }
        }
    };
    openIn(QStringLiteral("en"));
    m_window->selectLocalFile();
    m_window->selectExportPath();
    m_window->about();
    m_window->onDeleteAll();
    QCOMPARE(m_shown.size(), 4);
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
}

void TestAccessibility::everyStopHasANameOfItsOwn()
{
    const QWidget *const window = open();
    QHash<QString, const QWidget *> named;
    const Widgets all = stops(*window);
    QVERIFY(!all.isEmpty());
    for (const QWidget *const stop : all) {
        const QString name = nameOf(stop);
        QVERIFY2(!name.isEmpty(), describe(stop));
        QVERIFY2(!named.contains(name),
                 describe(stop) + " is called as " + describe(named.value(name)));
        named.insert(name, stop);
        // One goes down to it from the window, and not only up from it.
        for (auto *told = toldOf(stop); told->object() != window->window(); told = told->parent())
            QVERIFY2(told->parent()->indexOfChild(told) >= 0, describe(stop));
        // The search boxes have their column's name inside, and an address one label for its parts.
        const bool isField =
            qobject_cast<const QLineEdit *>(stop) || qobject_cast<const QComboBox *>(stop);
        if (isField && !stop->inherits("SearchEdit") && !stop->inherits("IpPart"))
            QVERIFY2(hasLabel(stop), describe(stop));
    }
    // A screen reader may ask for a scroll bar that has gone meanwhile.
    const auto areas = window->findChildren<QScrollArea *>();
    for (const QScrollArea *const area : areas)
        QVERIFY(!toldOf(area)->child(toldOf(area)->childCount()));
    const auto labels = window->findChildren<QLabel *>();
    for (const QLabel *const label : labels) {
        if (label->buddy() && label->isVisibleTo(window) && !label->text().isEmpty())
            QCOMPARE(nameOf(label->buddy()), label->text());
    }
    const auto buttons = window->findChildren<QAbstractButton *>();
    for (const QAbstractButton *const one : buttons) {
        // What clears a line is a help for the mouse; the keyboard has Escape.
        if (one->isVisibleTo(window) && !qobject_cast<QLineEdit *>(one->parent()))
            QVERIFY2(one->focusPolicy() & Qt::TabFocus, describe(one));
    }
}

void TestAccessibility::tabGoesAsOneReads()
{
    const QWidget *const window = open();
    const Widgets expected = inReadingOrder(*window, stops(*window));
    const Widgets walked = walk(expected.first(), Qt::Key_Tab);
    QVERIFY2(walked == expected,
             "walked:" + describe(walked) + "\nas one reads:" + describe(expected));
    Widgets back = walk(expected.first(), Qt::Key_Backtab);
    std::reverse(back.begin() + 1, back.end());
    QVERIFY2(back == expected, "walked back:" + describe(back));
}

void TestAccessibility::aChineseScreenIsChinese()
{
    QWidget *const window = open(QStringLiteral("zh"));
    QStringList texts;
    collectTexts(QAccessible::queryAccessibleInterface(window), texts);
    const auto actions = window->findChildren<QAction *>();
    for (const QAction *const action : actions)
        texts << action->text() << action->statusTip();
    QVERIFY(texts.filter(QRegularExpression(QStringLiteral("[\u4e00-\u9fff]"))).size() > 2);
    // What Chinese software leaves in Latin letters: names, standards, keys, a device's own values.
    const QRegularExpression latinTerms(QStringLiteral(
        "\\b(HTTPD?|PNP|SIP|MAC|DNS|CSV|KT[PV]\\w+|DK\\w+|PCM[UA]|GSM|Keep-Alive|English|"
        "Velloran|Office|Excel|MIT|devices\\.csv|backup|Ctrl|eth\\d|IP|ID)\\b"));
    const QRegularExpression latinWord(QStringLiteral("[A-Za-z]{2,}"));
    for (const QString &text : qAsConst(texts)) {
        const QString rest = QString(text).remove(latinTerms);
        QVERIFY2(!rest.contains(latinWord), qPrintable(text));
    }
}

void TestAccessibility::aCellTellsItsColumnAndItsText()
{
    openWindow();
    addDevices();
    auto *const view = m_window->findChild<ContactView *>();
    QAccessibleTableInterface *const table =
        QAccessible::queryAccessibleInterface(view)->tableInterface();
    QCOMPARE(table->rowCount(), 2);
    for (int column = 0; column < ContactModel::ColumnCount; ++column) {
        const QString title = table->columnDescription(column);
        QVERIFY2(!title.isEmpty(), QByteArray::number(column));
        const QString told = table->cellAt(1, column)->text(QAccessible::Name);
        if (column == ContactModel::Detail || column == ContactModel::Delete)
            QCOMPARE(told, title); // a picture, told by what it does
        else
            QCOMPARE(told, view->model()->index(1, column).data().toString());
    }
}

void TestAccessibility::menusAndMnemonics()
{
    // The English texts are given: "&New" stands beside "&News", and of the menus and the service
    // buttons two answer to O and two to E, one after the other. Chinese is free of that.
    const auto checkUnique = [](const QStringList &texts) {
        QStringList keys;
        for (const QString &text : texts)
            keys.append(QKeySequence::mnemonic(text).toString());
        keys.removeAll(QString());
        QCOMPARE(keys.removeDuplicates(), 0);
    };
    for (const char *const language : {"en", "zh"}) {
        openIn(QLatin1String(language));
        const bool isChinese = *language == 'z';
        QStringList inWindow = {button("tool_httpButton")->text(),
                                button("tool_pnpButton")->text()};
        const auto menus = m_window->menuBar()->actions();
        for (const QAction *const menu : menus) {
            QVERIFY2(!QKeySequence::mnemonic(menu->text()).isEmpty(), qPrintable(menu->text()));
            inWindow.append(menu->text());
            QStringList inMenu;
            const auto actions = menu->menu()->actions();
            for (const QAction *const action : actions) {
                QVERIFY2(action->isSeparator() || action->isEnabled(), qPrintable(action->text()));
                inMenu.append(action->text());
            }
            if (isChinese)
                checkUnique(inMenu);
        }
        if (isChinese)
            checkUnique(inWindow);
    }
}

void TestAccessibility::theKeyDeleteAsksFirst()
{
    openWindow();
    addDevices();
    auto *const view = m_window->findChild<ContactView *>();
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Down);
    view->setCurrentIndex(view->model()->index(1, 0));
    m_answers = QStringList{QStringLiteral("No"), QStringLiteral("Yes")};
    QTest::keyClick(view, Qt::Key_Delete);
    QCOMPARE(m_dataMgr->devices().size(), 2);
    QTest::keyClick(view, Qt::Key_Delete);
    QCOMPARE(m_dataMgr->devices().size(), 1);
    QCOMPARE(m_dataMgr->devices().at(0).info.mac, QStringLiteral("02:00:A7:00:00:01"));
    QVERIFY(m_shown.last().text.contains(QStringLiteral("02:00:A7:00:00:02")));
}

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
