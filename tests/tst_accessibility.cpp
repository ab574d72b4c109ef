// Tests that the windows can be used by keyboard, with a screen reader and on every screen, in both
// languages. Each is opened as a user opens it, and checked by what Qt tells a screen reader, by
// the Tab key and by the places of its widgets.
#include "app/Appearance.h"
#include "app/Language.h"
#include "app/ReportBox.h"
#include "net/NetCardSelectDialog.h"
#include "tests/Geometry.h"
#include "tests/WindowFixture.h"
#include "view/ContactModel.h"
#include "view/ContactView.h"
#include "view/SearchEdit.h"
#include "widgets/UserGuide.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollArea>

namespace {

using Widgets = QList<QWidget *>;

QAccessibleInterface *toldOf(const QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
}

QString nameOf(const QWidget *widget)
{
    const auto labels = toldOf(widget)->relations(QAccessible::Label);
    return (labels.isEmpty() ? toldOf(widget) : labels.first().first)->text(QAccessible::Name);
}

QByteArray describe(const Widgets &widgets)
{
    QByteArray text;
    for (const QWidget *const widget : widgets)
        text += QByteArray("\n  ") + widget->metaObject()->className() + " \"" +
                widget->objectName().toUtf8() + '"';
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

/// What stands for the widget beside the other one: the outermost scroll area around it that does
/// not hold the other, or else the widget itself.
const QWidget *representative(const QWidget *widget, const QWidget *other)
{
    const QWidget *outermost = widget;
    for (const QWidget *above = widget; above; above = above->parentWidget()) {
        if (qobject_cast<const QScrollArea *>(above) && !above->isAncestorOf(other))
            outermost = above;
    }
    return outermost;
}

/// The reading order is top to bottom, and left to right within a line. A widget is on one line
/// with another if it spans the other's middle. A scroll area is read to its end before what
/// follows.
bool isReadBefore(const QWidget *one, const QWidget *other)
{
    const auto place = [](const QWidget *widget) {
        return QRect(widget->mapTo(widget->window(), QPoint()), widget->size());
    };
    const QRect a = place(representative(one, other));
    const QRect b = place(representative(other, one));
    const bool isOneLine = a.center().y() <= b.bottom() && b.center().y() <= a.bottom();
    return isOneLine ? a.left() < b.left() : a.top() < b.top();
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

class TestAccessibility : public QObject, WindowFixture
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QDir::setCurrent(QStringLiteral(VL_SOURCE_DIR));
        applyAppearance(*qApp);
    }

    void init() { setUpFolder(); }
    void cleanup()
    {
        m_alone.reset();
        tearDown();
    }

    void everythingHasItsPlace_data() { windows(); }
    /// At the scale that the process is started with.
    void everythingHasItsPlace()
    {
        for (const QSize &pixels : {QSize(1024, 600), QSize(1366, 768), QSize(1920, 1080)}) {
            if (pixels.width() == 1024 && qApp->devicePixelRatio() > 1)
                continue; // nobody enlarges the text on such a small screen
            Geometry::useScreen(pixels);
            for (const Language &one : languages) {
                const QString language = QLatin1String(one.word);
                QVERIFY(QFile::exists(QStringLiteral(VL_CATALOGUE_DIR "/%1.qm").arg(language)));
                const QWidget *const window = open(language);
                QCoreApplication::processEvents();
                const QString faults = Geometry::faults(*window);
                QVERIFY2(faults.isEmpty(), qPrintable(language + faults));
                m_alone.reset();
            }
        }
    }

    void boxesFitTheScreen()
    {
        Geometry::useScreen(QSize(1366, 768));
        QString faults;
        m_user->meanwhile = [&faults] {
            const auto all = QApplication::topLevelWidgets();
            for (QWidget *const box : all) {
                if (qobject_cast<QMessageBox *>(box) || box->inherits("QFileDialog")) {
                    box->show();
                    faults += Geometry::faults(*box);
                }
            }
        };
        openIn("en"_s);
        addDevice("<h1>"_s + QString(10000, QLatin1Char('W')));
        part<ContactView>()->setFocus();
        QTest::keyClick(part<ContactView>(), Qt::Key_Delete);
        m_window->selectLocalFile();
        m_window->selectExportPath();
        m_window->about();
        m_window->onDeleteAll();
        QCOMPARE(m_user->boxes.size(), 5);
        QVERIFY2(faults.isEmpty(), qPrintable(faults));
    }

    void stopsHaveNamesAndAnOrder_data() { windows(); }
    void stopsHaveNamesAndAnOrder()
    {
        QWidget *const window = open("en"_s);
        QHash<QString, QWidget *> named;
        const Widgets all = stops(*window);
        QVERIFY(!all.isEmpty());
        for (QWidget *const stop : all) {
            const QString name = nameOf(stop);
            QVERIFY2(!name.isEmpty(), describe({stop}));
            QVERIFY2(!named.contains(name), describe({stop, named.value(name, stop)}));
            named.insert(name, stop);
            // A screen reader can also go down to it from the window.
            for (auto *told = toldOf(stop); told->object() != window->window();
                 told = told->parent())
                QVERIFY2(told->parent()->indexOfChild(told) >= 0, describe({stop}));
            // A search box has its column's name inside. An address has one label for its parts.
            const bool isField =
                qobject_cast<const QLineEdit *>(stop) || qobject_cast<const QComboBox *>(stop);
            if (isField && !stop->inherits("SearchEdit") && !stop->inherits("IpPart"))
                QVERIFY2(!toldOf(stop)->relations(QAccessible::Label).isEmpty(), describe({stop}));
        }
        const auto labels = window->findChildren<QLabel *>();
        for (const QLabel *const label : labels) {
            if (label->buddy() && label->isVisibleTo(window) && !label->text().isEmpty())
                QCOMPARE(nameOf(label->buddy()), label->text());
        }
        const auto buttons = window->findChildren<QAbstractButton *>();
        for (QAbstractButton *const one : buttons) {
            // The sign that clears a line is for the mouse; the keyboard has Escape.
            if (one->isVisibleTo(window) && !qobject_cast<QLineEdit *>(one->parent()))
                QVERIFY2(one->focusPolicy() & Qt::TabFocus, describe({one}));
        }

        const Widgets walked =
            walk(*std::min_element(all.begin(), all.end(), isReadBefore), Qt::Key_Tab);
        QCOMPARE(walked.size(), all.size());
        for (int i = 1; i < walked.size(); ++i)
            QVERIFY2(isReadBefore(walked.at(i - 1), walked.at(i)), describe(walked.mid(i - 1, 2)));
        Widgets back = walk(walked.first(), Qt::Key_Backtab);
        std::reverse(back.begin() + 1, back.end());
        QVERIFY2(back == walked, "walked back:" + describe(back));
    }

    void aChineseScreenIsChinese_data() { windows(); }
    void aChineseScreenIsChinese()
    {
        QWidget *const window = open("zh"_s);
        QStringList texts;
        collectTexts(QAccessible::queryAccessibleInterface(window), texts);
        const auto actions = window->findChildren<QAction *>();
        for (const QAction *const action : actions)
            texts << action->text() << action->statusTip();
        QVERIFY(texts.filter(QRegularExpression("[\u4e00-\u9fff]"_s)).size() > 2);
        // Chinese software leaves these in Latin letters: names, standards, keys, a device's
        // values.
        const QRegularExpression latinTerms(QStringLiteral(
            "\\b(HTTPD?|PNP|SIP|MAC|DNS|CSV|KT[PV]\\w+|DK\\w+|PCM[UA]|GSM|Keep-Alive|English|"
            "Velloran|Office|Excel|MIT|devices\\.csv|backup|Ctrl|eth\\d|IP|ID)\\b"));
        const QRegularExpression latinWord("[A-Za-z]{2,}"_s);
        for (const QString &text : qAsConst(texts))
            QVERIFY2(!QString(text).remove(latinTerms).contains(latinWord), qPrintable(text));
    }

    void aCellTellsItsColumnAndItsText()
    {
        openWindow();
        addDevices();
        auto *const view = part<ContactView>();
        QAccessibleTableInterface *const table =
            QAccessible::queryAccessibleInterface(view)->tableInterface();
        QCOMPARE(table->rowCount(), 2);
        for (int column = 0; column < ContactModel::ColumnCount; ++column) {
            const QString title = table->columnDescription(column);
            QVERIFY2(!title.isEmpty(), QByteArray::number(column));
            const QString told = table->cellAt(1, column)->text(QAccessible::Name);
            if (column == ContactModel::Detail || column == ContactModel::Delete)
                QCOMPARE(told, title); // the cell shows an icon, which is named by its effect
            else
                QCOMPARE(told, view->model()->index(1, column).data().toString());
        }
    }

private:
    static void windows()
    {
        QTest::addColumn<QByteArray>("slot"); // of the main window; it opens the row's window
        for (const auto &[name, slot] :
             std::initializer_list<std::pair<const char *, const char *>>{
                 {"empty list", ""},
                 {"list and report", ""},
                 {"smallest window", ""},
                 {"import page", "localImport"},
                 {"export page", "localExport"},
                 {"new device", "constructNewFile"},
                 {"new device in full", "constructNewFile"},
                 {"new devices", "constructNewFiles"},
                 {"card choice", ""},
                 {"port dialog", "configHttpdPortOption"},
                 {"user guide", "showUserGuide"},
                 {"standard buttons", ""}})
            QTest::newRow(name) << QByteArray(slot);
    }
    /// The window of this row, once its slot has run.
    QWidget *opened(const QByteArray &row)
    {
        if (row == "list and report") {
            part<ReportBox>()->show();
            addDevices();
            part<SearchEdit>()->setText("0"_s); // no number contains a 0, so every device is hidden
        } else if (row == "smallest window") {
            m_window->resize(1, 1);
        } else if (row == "new device in full") {
            button("showAdvanceButton")->click();
        } else if (row == "card choice") {
            auto chooser = std::make_unique<NetCardSelectDialog>();
            chooser->setNetCards({{"eth0"_s, true, {"192.0.2.1"_s}}, {"eth1"_s, true, {}}});
            m_alone = std::move(chooser);
        } else if (row == "standard buttons") {
            // Their words come from Qt's own catalogue.
            auto box = std::make_unique<QMessageBox>();
            box->setWindowTitle(m_window->windowTitle());
            box->setStandardButtons(QMessageBox::Ok | QMessageBox::Save | QMessageBox::Cancel |
                                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Retry);
            m_alone = std::move(box);
        }
        if (m_alone) {
            m_alone->show();
            return m_alone.get();
        }
        for (const char *const name : {"importPage", "exportPage", "portDialog"}) {
            if (part(name) && part(name)->isVisible())
                return part(name);
        }
        if (row == "user guide")
            return topLevel<UserGuide>();
        QWidget *const modal = QApplication::activeModalWidget();
        return modal ? modal : m_window.get();
    }

    /// The window of this data row, in front and with the keyboard.
    QWidget *open(const QString &language)
    {
        openIn(language);
        QFETCH(QByteArray, slot);
        [&] { QVERIFY(slot.isEmpty() || QMetaObject::invokeMethod(m_window.get(), slot)); }();
        QWidget *const shown = opened(QTest::currentDataTag());
        shown->activateWindow();
        [shown] { QTRY_COMPARE(QApplication::activeWindow(), shown->window()); }();
        return shown;
    }

    void openIn(const QString &language)
    {
        writeFile(path("language/config.xml"),
                  "<root><Language>" + language.toUtf8() + "</Language></root>");
        const auto catalogues = QDir(QStringLiteral(VL_CATALOGUE_DIR)).entryInfoList({"*.qm"_s});
        for (const QFileInfo &file : catalogues)
            QFile::link(file.filePath(), path("language/") + file.fileName());
        openWindow();
    }

    void addDevices()
    {
        for (const QString &mac : {"02:00:A7:00:00:01"_s, "02:00:A7:00:00:02"_s})
            addDevice(mac);
    }

    /// A window that has no place in the main window.
    std::unique_ptr<QWidget> m_alone;
};

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
