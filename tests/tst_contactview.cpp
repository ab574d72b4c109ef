#include "tests/TestDevices.h"
#include "view/ColumnLayout.h"
#include "view/ContactDelegate.h"
#include "view/ContactModel.h"
#include "view/ContactTitle.h"
#include "view/ContactView.h"
#include "view/HiddenNote.h"
#include "view/RowPictures.h"
#include "view/SearchBar.h"
#include "view/SearchEdit.h"

#include <QAbstractButton>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>
#include <QVariantAnimation>

#include <memory>
#include <numeric>

namespace {

/// The list with its header and search boxes, as they stand in the window.
struct Fixture
{
    explicit Fixture(int devices, const QSize &size = QSize(1024, 500))
    {
        for (int row = 0; row < devices; ++row)
            list.append(numbered(row + 1));
        view = new ContactView(list, &window);
        title = new ContactTitle(*view, &window);
        bar = new SearchBar(*view, &window);
        auto *layout = new QVBoxLayout(&window);
        layout->setSpacing(0);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(title);
        layout->addWidget(bar);
        layout->addWidget(view);
        window.resize(size);
        window.show();
    }

    static ContactInfo numbered(int number)
    {
        return stampedDevice(QStringLiteral("d%1").arg(number, 3, 10, QLatin1Char('0')));
    }

    QSortFilterProxyModel &proxy() const
    {
        return *qobject_cast<QSortFilterProxyModel *>(view->model());
    }

    QString shownMac(int row) const
    {
        return view->model()->index(row, ContactModel::Mac).data().toString();
    }

    QPoint cell(int row, int column) const
    {
        return view->visualRect(view->model()->index(row, column)).center();
    }

    void click(int row, int column) const
    {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell(row, column));
    }

    DeviceList list;
    QWidget window;
    ContactView *view;
    ContactTitle *title;
    SearchBar *bar;
};

int leftIn(const QWidget &window, const QWidget &widget)
{
    return widget.mapTo(&window, QPoint()).x();
}

void writePicture(const QString &name, const QColor &color, const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    QVERIFY(image.save(QStringLiteral("resource/") + name));
}

} // namespace

class TestContactView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void columnWidths();
    void headerAndBoxesFollowTheColumns_data();
    void headerAndBoxesFollowTheColumns();

    void clicksReachTheRightDevice();
    void doubleClickDeletesOneDevice();
    void keyboardOpensAndNeverDeletes();

    void keywordFiltersItsColumn();
    void blanksAndClearing();
    void macIsFoundByItsDigits_data();
    void macIsFoundByItsDigits();
    void onlyOneBoxHoldsAKeyword();
    void filterKeepsTheSelection();

    void deleteAndEditKeepPlaceAndSelection();
    void replacedListKeepsTheDevice();
    void changesThatTheSearchHides();

    void selectedRowIsReadable_data();
    void selectedRowIsReadable();
    void pointerMarksTheButton();
    void textsStayInTheirRow();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_startFolder;
};

void TestContactView::init()
{
    // The pictures are looked for in the working directory; each test has its own.
    m_startFolder = QDir::currentPath();
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QVERIFY(QDir::setCurrent(m_folder->path()));
    QVERIFY(QDir().mkdir(QStringLiteral("resource")));
}

void TestContactView::cleanup()
{
    QDir::setCurrent(m_startFolder);
    m_folder.reset();
}

void TestContactView::cleanupTestCase()
{
    // Qt fades a search box's clear button; a fade whose box is gone frees itself at the next tick
    // of the clock that all animations share.
    QVariantAnimation clock;
    clock.setDuration(50);
    clock.start();
    QTRY_COMPARE(clock.state(), QAbstractAnimation::Stopped);
}

void TestContactView::initTestCase()
{
    // As the style sheet has it: the fixed sizes are meant for it.
    QFont font;
    font.setPixelSize(13);
    QApplication::setFont(font);
}

void TestContactView::columnWidths()
{
    QFont font;
    const ColumnLayout::Widths least = ColumnLayout::minimums(font, 9999);
    const int minimum = std::accumulate(least.begin(), least.end(), 0);
    // No scrolling sideways on a screen of 1366 pixels at 150%, beside the list's scroll bar.
    QVERIFY2(minimum <= 864, qPrintable(QString::number(minimum)));
    for (const int viewport : {0, 500, 1007, 1008, 1009, 3840}) {
        const ColumnLayout::Widths widths = ColumnLayout::widths(viewport, least);
        QCOMPARE(std::accumulate(widths.begin(), widths.end(), 0), std::max(viewport, minimum));
        QCOMPARE(widths[ContactModel::Number], least[ContactModel::Number]);
        for (const std::size_t action : {ContactModel::Detail, ContactModel::Delete})
            QVERIFY(widths[action] <= least[action] + 10);
    }
}

void TestContactView::headerAndBoxesFollowTheColumns_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("devices");
    QTest::newRow("scrolled sideways") << 500 << 2;
    QTest::newRow("smallest window, scroll bar") << 1024 << 60;
    QTest::newRow("wide") << 3840 << 2;
}

void TestContactView::headerAndBoxesFollowTheColumns()
{
    QFETCH(int, width);
    QFETCH(int, devices);
    Fixture f(devices, QSize(800, 400));
    f.window.resize(width, 400);
    QCoreApplication::processEvents();
    QScrollBar *const sideways = f.view->horizontalScrollBar();
    QCOMPARE(sideways->maximum() > 100, width < 1024);
    sideways->setValue(100);

    const auto labels = f.title->findChildren<QLabel *>();
    const int tableLeft = leftIn(f.window, *f.view->viewport());
    for (int i = 0; i < labels.size(); ++i) {
        const int column = i + 2;
        QCOMPARE(leftIn(f.window, *labels.at(i)),
                 tableLeft + f.view->columnViewportPosition(column));
        QCOMPARE(labels.at(i)->width(), f.view->columnWidth(column));
    }
    for (int index = 0; index < SearchEdit::boxCount; ++index) {
        const SearchEdit &edit = *f.bar->searchEdit(index);
        const int column = SearchEdit::columnOf(index);
        const QRect columnRect(tableLeft + f.view->columnViewportPosition(column), 0,
                               f.view->columnWidth(column), 1);
        const QRect box(leftIn(f.window, edit), 0, edit.width(), 1);
        QVERIFY(columnRect.contains(box));
        QCOMPARE(box.center(), columnRect.center());
        QVERIFY(columnRect.width() - box.width() <= 4);
    }
}

void TestContactView::clicksReachTheRightDevice()
{
    constexpr int row = 2;
    constexpr int listRow = 24; // the third that ends in 5
    const Fixture f(30);
    f.view->sortBySearchEdit(0, QStringLiteral("5."));
    QSignalSpy detail(f.view, &ContactView::onRowDetail);
    QSignalSpy removal(f.view, &ContactView::onRowDelete);

    for (int column = 0; column < 9; ++column)
        f.click(row, column);
    QCOMPARE(f.view->currentListRow(), listRow);
    QCOMPARE(f.view->selectionState(), 1);
    QCOMPARE(detail.size() + removal.size(), 0);
    f.click(row, ContactModel::Detail);
    QCOMPARE(detail, QList<QVariantList>{{listRow}});
    f.click(row, ContactModel::Delete);
    QCOMPARE(removal, QList<QVariantList>{{listRow}});

    f.view->viewClicked(QModelIndex());
    const ContactModel other(f.list);
    f.view->viewClicked(other.index(0, ContactModel::Delete));
    QCOMPARE(detail.size() + removal.size(), 2);
}

void TestContactView::doubleClickDeletesOneDevice()
{
    Fixture f(5);
    connect(f.view, &ContactView::onRowDelete, f.view, [&](int row) {
        f.list.removeAt(row);
        f.view->updateContactModel();
    });
    QSignalSpy detail(f.view, &ContactView::onRowDetail);
    QWidget *const viewport = f.view->viewport();
    ulong time = 1000;
    // The four presses of a hurried hand; the fifth comes later.
    const auto clickFast = [&](const QPoint &place) {
        for (const bool isDouble : {false, true, false, true}) {
            QMouseEvent press(isDouble ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress,
                              place, viewport->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                              Qt::NoModifier);
            press.setTimestamp(time += 100);
            QCoreApplication::sendEvent(viewport, &press);
            QTest::mouseRelease(viewport, Qt::LeftButton, {}, place);
        }
        time += 10000;
    };
    const QPoint trash = f.cell(1, ContactModel::Delete);
    clickFast(trash);
    QCOMPARE(f.list.size(), 4);
    QCOMPARE(f.shownMac(1), QStringLiteral("d003.mac"));
    clickFast(trash);
    QCOMPARE(f.list.size(), 3);
    QCOMPARE(f.shownMac(1), QStringLiteral("d004.mac"));
    clickFast(f.cell(1, ContactModel::Detail));
    QCOMPARE(detail.size(), 1);
}

void TestContactView::keyboardOpensAndNeverDeletes()
{
    const Fixture f(5);
    QSignalSpy detail(f.view, &ContactView::onRowDetail);
    QSignalSpy removal(f.view, &ContactView::onRowDelete);
    f.view->sortBySearchEdit(0, QStringLiteral("d003"));
    f.view->setCurrentIndex(f.view->model()->index(0, ContactModel::Delete));
    QTest::keyClick(f.view, Qt::Key_Return);
    QCOMPARE(detail.size(), 1);
    QCOMPARE(detail.at(0).at(0).toInt(), 2);
    for (const Qt::Key key :
         {Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Space, Qt::Key_F2, Qt::Key_X})
        QTest::keyClick(f.view, key);
    QCOMPARE(removal.size(), 0);
    QCOMPARE(detail.size(), 1);
}

void TestContactView::keywordFiltersItsColumn()
{
    // Boxes -1 and 9 are none; they stand for the number, like box 5.
    const QVector<int> columns = {0, 1, 2, 3, 4, 5, 0, 6, 7, 8, 0};
    for (int box = -1; box <= 9; ++box) {
        const Fixture f(5);
        const int column = columns.at(box + 1);
        const QString keyword = f.view->model()->index(1, column).data().toString();
        if (SearchEdit *const edit = f.bar->searchEdit(box))
            QTest::keyClicks(edit, keyword);
        else
            f.view->sortBySearchEdit(box, keyword);
        QCOMPARE(f.proxy().filterKeyColumn(), column);
        QCOMPARE(f.proxy().filterRegExp().pattern(), keyword);
        QCOMPARE(f.proxy().rowCount(), 1);
        QCOMPARE(f.shownMac(0), QStringLiteral("d002.mac"));
        f.view->sortBySearchEdit(box, keyword.toUpper());
        QCOMPARE(f.proxy().rowCount(), 1);
        f.view->sortBySearchEdit(box, keyword + QLatin1Char('*'));
        QCOMPARE(f.proxy().rowCount(), 0);
    }
}

void TestContactView::blanksAndClearing()
{
    const Fixture f(30);
    SearchEdit &edit = *f.bar->searchEdit(0);
    edit.setText(QStringLiteral("  d01 "));
    QCOMPARE(f.proxy().rowCount(), 10);
    QCOMPARE(f.proxy().filterRegExp().pattern(), QStringLiteral("d01"));
    edit.setText(QStringLiteral("   "));
    QCOMPARE(f.proxy().rowCount(), 30);
    QCOMPARE(f.proxy().filterKeyColumn(), 1);
    edit.setText(QStringLiteral("D01"));
    QCOMPARE(f.proxy().rowCount(), 10);
    // Down into what was found.
    QApplication::setActiveWindow(f.view->window());
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_Down);
    QVERIFY(f.view->hasFocus());
    QCOMPARE(f.view->currentListRow(), 9);
    QCOMPARE(f.view->selectionState(), 1);
    QTest::keyClick(&edit, Qt::Key_Escape);
    QCOMPARE(edit.text(), QString());
    QCOMPARE(f.proxy().rowCount(), 30);
    QCOMPARE(f.proxy().filterKeyColumn(), 0);
    for (int row = 0; row < 30; ++row)
        QCOMPARE(f.view->listRow(f.proxy().index(row, 0)), row);
}

void TestContactView::macIsFoundByItsDigits_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<bool>("found");
    const auto row = [](const char *stored, const char *keyword, bool found = true) {
        QTest::addRow("%s in %s", keyword, stored)
            << QString::fromLatin1(stored) << QString::fromLatin1(keyword) << found;
    };
    row("02:00:a7:0B:1c:2d", "A7:0b");
    row("02:00:A7:0B:1C:2D", "a70b1");
    row("0200a70b1c2d", "A7:0B:1");
    row("02-00-A7-0B-1C-2D", ":A7.0b");
    row("0200.a70b.1c2d", "7:0b");
    row("02:00:A7:0B:1C:2D", "70:B", false);
    row("0200A70B1C2D", "0:0a", false);
    row("n/a", ":", false);
}

void TestContactView::macIsFoundByItsDigits()
{
    QFETCH(QString, stored);
    QFETCH(QString, keyword);
    QFETCH(bool, found);
    Fixture f(0);
    ContactInfo device;
    device.mac = stored;
    f.list.append(device);
    f.view->updateContactModel();
    // Typed, so that each key searches among what the one before has found.
    QTest::keyClicks(f.bar->searchEdit(0), keyword);
    QCOMPARE(f.proxy().rowCount() == 1, found);
}

void TestContactView::onlyOneBoxHoldsAKeyword()
{
    const Fixture f(20);
    connect(f.bar, &SearchBar::searchTextChanged, f.view, &ContactView::sortBySearchEdit);
    QSignalSpy reports(f.bar, &SearchBar::searchTextChanged);
    QSignalSpy filterRuns(&f.proxy(), &QAbstractItemModel::layoutChanged);
    QTest::keyClicks(f.bar->searchEdit(0), QStringLiteral("d01"));
    QCOMPARE(reports.size(), 3);
    QCOMPARE(filterRuns.size(), 3);
    QTest::keyClicks(f.bar->searchEdit(4), QStringLiteral("7"));
    QCOMPARE(f.bar->searchEdit(0)->text(), QString());
    QCOMPARE(reports.size(), 4);
    QCOMPARE(reports.last().at(0).toInt(), 4);
    QCOMPARE(filterRuns.size(), 4);
    QCOMPARE(f.proxy().rowCount(), 2);
}

void TestContactView::filterKeepsTheSelection()
{
    const Fixture f(40);
    f.click(4, ContactModel::City);
    QCOMPARE(f.view->currentListRow(), 4);
    f.bar->searchEdit(0)->setText(QStringLiteral("5.mac"));
    QCOMPARE(f.view->currentListRow(), 4);
    QCOMPARE(f.view->currentIndex().row(), 0);
    // Another column with a keyword that matches as well: no moment in between loses the row.
    f.bar->searchEdit(5)->setText(QStringLiteral("5"));
    QCOMPARE(f.view->currentListRow(), 4);
    QVERIFY(f.view->selectionModel()->isRowSelected(0, QModelIndex()));
    f.bar->searchEdit(5)->clear();
    QVERIFY(f.view->selectionModel()->isRowSelected(4, QModelIndex()));
    // Hidden, it is nobody's current one, and comes back as what it was.
    f.bar->searchEdit(5)->setText(QStringLiteral("9"));
    QCOMPARE(f.view->selectionState(), 0);
    QCOMPARE(f.view->currentListRow(), -1);
    f.bar->clear();
    QCOMPARE(f.view->currentListRow(), 4);
    QVERIFY(f.view->selectionModel()->isRowSelected(4, QModelIndex()));
}

void TestContactView::deleteAndEditKeepPlaceAndSelection()
{
    Fixture f(100);
    QSignalSpy updated(f.view, &ContactView::viewUpdated);
    QScrollBar *const bar = f.view->verticalScrollBar();
    f.view->selectRow(50);
    bar->setValue(1234);

    const auto expectDevice = [&](int row, const QString &mac) {
        QCOMPARE(bar->value(), 1234);
        QCOMPARE(f.view->selectionState(), 1);
        QCOMPARE(f.view->currentListRow(), row);
        QCOMPARE(f.shownMac(row), mac);
        QVERIFY(f.view->selectionModel()->isRowSelected(row, QModelIndex()));
    };
    f.list.removeAt(45);
    f.view->updateContactModel();
    expectDevice(49, QStringLiteral("d051.mac"));
    f.list.removeAt(80);
    f.view->updateContactModel();
    expectDevice(49, QStringLiteral("d051.mac"));
    f.list.replaceAt(49, stampedDevice(QStringLiteral("edited")));
    f.view->updateContactModel();
    expectDevice(49, QStringLiteral("edited.mac"));
    f.list.append(Fixture::numbered(500));
    f.view->updateContactModel();
    expectDevice(49, QStringLiteral("edited.mac"));
    // The current row itself goes, out of sight: the view does not jump there.
    bar->setValue(0);
    f.list.removeAt(49);
    f.view->updateContactModel();
    QCoreApplication::processEvents();
    QCOMPARE(bar->value(), 0);
    QCOMPARE(updated.size(), 5);
    QCOMPARE(f.view->deviceCount(), 98);
}

void TestContactView::replacedListKeepsTheDevice()
{
    Fixture f(60);
    f.view->selectRow(20);
    f.view->verticalScrollBar()->setValue(300);
    QList<ContactInfo> devices = f.list.snapshot().contacts();
    devices.append(Fixture::numbered(900));
    std::reverse(devices.begin(), devices.end());
    f.list.assign(devices);
    f.view->updateContactModel();
    QCOMPARE(f.shownMac(f.view->currentIndex().row()), QStringLiteral("d021.mac"));
    QCOMPARE(f.view->currentListRow(), 40);
    QCOMPARE(f.view->selectionState(), 1);
    QCOMPARE(f.view->verticalScrollBar()->value(), 300);

    QSignalSpy nobody(f.view, &ContactView::showNobodyPreview);
    f.list.clear();
    f.view->updateContactModel();
    QCOMPARE(nobody.size(), 1);
    QCOMPARE(f.view->selectionState(), 0);
    QCOMPARE(f.view->currentListRow(), -1);
}

void TestContactView::changesThatTheSearchHides()
{
    Fixture f(30);
    HiddenNote note(*f.view, *f.bar, &f.window);
    const auto noteText = [&] { return note.findChild<QLabel *>()->text(); };
    QVERIFY(note.isHidden());
    f.bar->searchEdit(0)->setText(QStringLiteral("d01"));
    QCOMPARE(f.proxy().rowCount(), 10);
    QCOMPARE(noteText(), QStringLiteral("Hidden by the search: 20"));
    f.view->selectRow(1);
    f.list.replaceAt(10, stampedDevice(QStringLiteral("other")));
    f.view->updateContactModel();
    QCOMPARE(f.proxy().rowCount(), 9);
    QCOMPARE(f.view->currentListRow(), -1);
    QCOMPARE(f.view->selectionState(), 0);
    QCOMPARE(noteText(), QStringLiteral("Hidden by the search: 21, new or changed: 1"));

    // A new one is shown, now or when it comes.
    f.view->showDevice(QStringLiteral("xd01.mac"));
    f.list.removeAt(9);
    f.list.append(stampedDevice(QStringLiteral("xd01")));
    f.view->updateContactModel();
    QCOMPARE(f.proxy().rowCount(), 9);
    QCOMPARE(f.shownMac(f.view->currentIndex().row()), QStringLiteral("xd01.mac"));
    QCOMPARE(f.view->selectionState(), 1);
    // Renumbered devices come and go with a filter on the number.
    f.bar->searchEdit(5)->setText(QStringLiteral("30"));
    f.list.removeAt(0);
    f.view->updateContactModel();
    QCOMPARE(f.proxy().rowCount(), 0);
    note.findChild<QAbstractButton *>()->click();
    QVERIFY(note.isHidden());
    QCOMPARE(f.proxy().rowCount(), 29);
}

void TestContactView::selectedRowIsReadable_data()
{
    QTest::addColumn<QColor>("selected");
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("paletteText");
    QTest::newRow("no pictures") << QColor() << QColor() << QColor(Qt::black);
    QTest::newRow("dark on light") << QColor(20, 40, 120) << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("translucent over dark")
        << QColor(255, 255, 255, 40) << QColor(20, 20, 20) << QColor(Qt::black);
}

void TestContactView::selectedRowIsReadable()
{
    QFETCH(QColor, selected);
    QFETCH(QColor, background);
    QFETCH(QColor, paletteText);
    if (selected.isValid()) {
        writePicture(QStringLiteral("selected_row.png"), selected, QSize(300, 60));
        writePicture(QStringLiteral("row_background.jpg"), background, QSize(10, 30));
    }
    Fixture f(3);
    QPalette palette = f.view->palette();
    palette.setColor(QPalette::Text, paletteText);
    palette.setColor(QPalette::HighlightedText, paletteText);
    f.view->setPalette(palette);
    f.view->selectRow(1);
    const QImage image = f.view->viewport()->grab().toImage();

    // A line above the text runs through the whole row in one colour, unlike that of its
    // neighbours.
    const QColor band = image.pixelColor(3, 34);
    for (int x = 0; x < f.view->horizontalHeader()->length(); ++x)
        QCOMPARE(image.pixelColor(x, 34), band);
    const QColor plain = image.pixelColor(3, 4);
    QCOMPARE(plain == band, selected == background && selected.isValid());

    RowPictures pictures;
    for (const bool isSelected : {false, true}) {
        RowPictures::RowState state;
        state.selected = isSelected;
        for (const bool lacksMac : {false, true}) {
            state.lacksMac = lacksMac;
            const QColor text = pictures.textColor(palette, state);
            QVERIFY(RowPictures::contrast(text, isSelected ? band : plain) >= 4.5);
            if (!isSelected && plain == Qt::white)
                QCOMPARE(text.red() > text.blue() + 100, lacksMac);
        }
    }
}

void TestContactView::pointerMarksTheButton()
{
    Fixture f(3);
    QWidget *const viewport = f.view->viewport();
    const auto tipOver = [&](int column) {
        QTest::mouseMove(viewport, f.cell(1, column));
        emit f.view->entered(f.view->model()->index(1, column));
        return QToolTip::text();
    };
    QCOMPARE(tipOver(ContactModel::Detail), QStringLiteral("View/Edit"));
    QCOMPARE(tipOver(ContactModel::Delete), QStringLiteral("Delete"));
    const QPoint corner = viewport->mapToGlobal(f.cell(1, ContactModel::Detail));
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *const window : windows) {
        if (window->inherits("QTipLabel"))
            QVERIFY(window->geometry().right() < corner.x() - ContactDelegate::iconEdge / 2 &&
                    window->geometry().bottom() < corner.y() + ContactView::rowPixels / 2);
    }
    QCOMPARE(viewport->cursor().shape(), Qt::PointingHandCursor);
    QVERIFY(tipOver(ContactModel::Mac).contains(QStringLiteral("No phone")));
    tipOver(ContactModel::City);
    QTRY_VERIFY(!QToolTip::isVisible());

    // Rows that go leave the mark with what is then under the pointer.
    tipOver(ContactModel::Delete);
    f.list.removeAt(1);
    f.list.removeAt(1);
    f.view->updateContactModel();
    QCOMPARE(viewport->cursor().shape(), Qt::ArrowCursor);
    const auto grabRow = [&] { return viewport->grab(QRect(0, 0, 300, 29)).toImage(); };
    QTest::mouseMove(viewport, f.cell(0, ContactModel::City));
    const QImage marked = grabRow();
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(viewport, &leave);
    QVERIFY(grabRow() != marked);
}

void TestContactView::textsStayInTheirRow()
{
    Fixture f(3);
    const auto grabRow = [&](int row) {
        return f.view->viewport()->grab(QRect(0, row * 30, 1000, 28)).toImage();
    };
    const QImage below = grabRow(2);
    ContactInfo device = Fixture::numbered(2);
    device.city = QLatin1Char('a') + QString(100000, QChar(0x0316)); // accents below each other
    device.company = QString(100000, QLatin1Char('W'));
    f.list.replaceAt(1, device);
    f.view->updateContactModel();
    QVERIFY(grabRow(1) != below);
    QCOMPARE(grabRow(2), below);
}

QTEST_MAIN(TestContactView)
#include "tst_contactview.moc"
