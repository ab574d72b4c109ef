#include "model/PhonesSeen.h"
#include "tests/Literal.h"
#include "tests/TestDevices.h"
#include "view/ContactDelegate.h"
#include "view/ContactModel.h"
#include "view/ContactTitle.h"
#include "view/ContactView.h"
#include "view/HiddenNote.h"
#include "view/RowPictures.h"
#include "view/SearchBar.h"
#include "view/SearchEdit.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>
#include <QVBoxLayout>
#include <QVariantAnimation>

namespace {

/// The list with its header and search boxes, as they stand in the window. The devices are "d001"
/// and so on.
struct Fixture
{
    explicit Fixture(int devices, int width = 1024)
    {
        for (int row = 0; row < devices; ++row)
            list.append(numbered(row + 1));
        view = new ContactView(list, &window);
        title = new ContactTitle(*view, &window);
        bar = new SearchBar(*view, &window);
        auto *layout = new QVBoxLayout(&window);
        layout->setSpacing(0);
        layout->setContentsMargins(0, 0, 0, 0);
        for (QWidget *const part : {static_cast<QWidget *>(title), static_cast<QWidget *>(bar),
                                    static_cast<QWidget *>(view)})
            layout->addWidget(part);
        window.resize(width, 500);
        window.show();
    }

    static ContactInfo numbered(int number)
    {
        return stampedDevice("d%1"_s.arg(number, 3, 10, QLatin1Char('0')));
    }

    QSortFilterProxyModel &proxy() const
    {
        return *qobject_cast<QSortFilterProxyModel *>(view->model());
    }
    int rows() const { return proxy().rowCount(); }
    QString shownMac(int row) const
    {
        return proxy().index(row, ContactModel::Mac).data().toString();
    }
    void search(int box, const QString &text) const { bar->searchEdit(box)->setText(text); }
    QPoint cell(int row, int column) const
    {
        return view->visualRect(proxy().index(row, column)).center();
    }
    void click(int row, int column) const
    {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell(row, column));
    }
    /// "row in the list, row in the view, MAC" of the one device that is current and selected.
    QString current() const
    {
        const int row = view->currentIndex().row();
        if (view->selectionState() != 1 || !view->selectionModel()->isRowSelected(row, {}))
            return view->currentListRow() == -1 ? "none"_s : "stale"_s;
        return "%1 %2 %3"_s.arg(view->currentListRow()).arg(row).arg(shownMac(row));
    }

    DeviceList list;
    QWidget window;
    ContactView *view;
    ContactTitle *title;
    SearchBar *bar;
};

} // namespace

class TestContactView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The style sheet's size, for which the fixed sizes are made.
        QFont font;
        font.setPixelSize(13);
        QApplication::setFont(font);
    }

    void cleanupTestCase()
    {
        // Qt fades a search box's clear button; a fade whose box is gone frees itself at the next
        // tick of the clock that all animations share.
        QVariantAnimation clock;
        clock.setDuration(50);
        clock.start();
        QTRY_COMPARE(clock.state(), QAbstractAnimation::Stopped);
    }

    void headerAndBoxesFollowTheColumns()
    {
        // No scrolling sideways on a screen of 1366 pixels at 150%.
        for (const int width : {500, 880, 1024, 3840}) {
            Fixture f(width == 1024 ? 60 : 2, 800); // with a scroll bar, or without
            f.window.resize(width, 400);
            QCoreApplication::processEvents();
            QScrollBar *const sideways = f.view->horizontalScrollBar();
            QCOMPARE(sideways->maximum() > 100, width == 500);
            QVERIFY(width == 500 ||
                    f.view->horizontalHeader()->length() == f.view->viewport()->width());
            sideways->setValue(100);

            const auto left = [&](const QWidget *widget) {
                return widget->mapTo(&f.window, QPoint()).x();
            };
            const auto column = [&](int number) {
                return QRect(left(f.view->viewport()) + f.view->columnViewportPosition(number), 0,
                             f.view->columnWidth(number), 1);
            };
            const auto labels = f.title->findChildren<QLabel *>();
            for (int i = 0; i < labels.size(); ++i)
                QCOMPARE(QRect(left(labels.at(i)), 0, labels.at(i)->width(), 1), column(i + 2));
            for (int index = 0; index < SearchEdit::boxCount; ++index) {
                const SearchEdit *const edit = f.bar->searchEdit(index);
                const QRect place = column(SearchEdit::columnOf(index));
                const QRect box(left(edit), 0, edit->width(), 1);
                QVERIFY(place.contains(box) && place.width() - box.width() <= 4);
                QCOMPARE(box.center(), place.center());
            }
        }
    }

    void clicksAndKeysReachTheRightDevice()
    {
        const Fixture f(30);
        f.view->sortBySearchEdit(0, "5."_s); // the third that ends in 5 is row 24
        const QSignalSpy detail(f.view, &ContactView::onRowDetail);
        const QSignalSpy removal(f.view, &ContactView::onRowDelete);
        for (int column = 0; column < ContactModel::Detail; ++column)
            f.click(2, column);
        QCOMPARE(f.current(), "24 2 d025.mac"_s);
        QCOMPARE(detail.size() + removal.size(), 0);
        f.click(2, ContactModel::Detail);
        QCOMPARE(detail, QList<QVariantList>{{24}});
        f.click(2, ContactModel::Delete);
        QCOMPARE(removal, QList<QVariantList>{{24}});

        // The keyboard opens and never deletes.
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Space})
            QTest::keyClick(f.view, key);
        QCOMPARE(detail, (QList<QVariantList>{{24}, {24}}));
        QCOMPARE(removal.size(), 1);
    }

    void doubleClickDeletesOneDevice()
    {
        Fixture f(5);
        connect(f.view, &ContactView::onRowDelete, f.view, [&](int row) {
            f.list.removeAt(row);
            f.view->updateContactModel();
        });
        const QSignalSpy detail(f.view, &ContactView::onRowDetail);
        QWidget *const viewport = f.view->viewport();
        ulong time = 1000;
        // Two double clicks in quick succession.
        const auto clickFast = [&](const QPoint &place) {
            for (const bool isDouble : {false, true, false, true}) {
                QMouseEvent press(isDouble ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress,
                                  place, viewport->mapToGlobal(place), Qt::LeftButton,
                                  Qt::LeftButton, Qt::NoModifier);
                press.setTimestamp(time += 100);
                QCoreApplication::sendEvent(viewport, &press);
                QTest::mouseRelease(viewport, Qt::LeftButton, {}, place);
            }
            time += 10000;
        };
        for (const QString &next : {"d003.mac"_s, "d004.mac"_s}) {
            clickFast(f.cell(1, ContactModel::Delete));
            QCOMPARE(f.shownMac(1), next);
        }
        QCOMPARE(f.list.size(), 3);
        clickFast(f.cell(1, ContactModel::Detail));
        QCOMPARE(detail.size(), 1);
    }

    void keywordFiltersItsColumn()
    {
        const QVector<int> columns = {1, 2, 3, 4, 5, 0, 6, 7, 8};
        for (int box = 0; box < columns.size(); ++box) {
            const Fixture f(5);
            const int column = columns.at(box);
            const QString keyword = f.proxy().index(1, column).data().toString();
            QTest::keyClicks(f.bar->searchEdit(box), keyword);
            QCOMPARE(f.proxy().filterKeyColumn(), column);
            QCOMPARE(f.rows(), 1);
            QCOMPARE(f.shownMac(0), "d002.mac"_s);
            f.view->sortBySearchEdit(box, keyword.toUpper());
            QCOMPARE(f.rows(), 1);
            f.view->sortBySearchEdit(box, keyword + QLatin1Char('*'));
            QCOMPARE(f.rows(), 0);
        }
    }

    void blanksAndClearing()
    {
        const Fixture f(30);
        SearchEdit &edit = *f.bar->searchEdit(0);
        for (const auto &[text, rows] : {std::pair("  d01 "_s, 10), {"   "_s, 30}, {"D01"_s, 10}}) {
            edit.setText(text);
            QCOMPARE(f.rows(), rows);
        }
        // The Down key leads into what was found.
        QApplication::setActiveWindow(f.view->window());
        edit.setFocus();
        QTest::keyClick(&edit, Qt::Key_Down);
        QVERIFY(f.view->hasFocus());
        QCOMPARE(f.current(), "9 0 d010.mac"_s);
        QTest::keyClick(f.view, Qt::Key_Down);
        QCOMPARE(f.current(), "10 1 d011.mac"_s);
        QTest::keyClick(&edit, Qt::Key_Escape);
        QCOMPARE(edit.text(), QString());
        QCOMPARE(f.rows(), 30);
        QCOMPARE(f.view->listRow(f.proxy().index(29, 0)), 29);
    }

    void macIsFoundByItsDigits()
    {
        struct Row
        {
            const char *stored, *keyword;
            bool isFound = true;
        };
        for (const Row &row : {Row{"02:00:a7:0B:1c:2d", "A7:0b"},
                               {"02:00:A7:0B:1C:2D", "a70b1"},
                               {"0200a70b1c2d", "A7:0B:1"},
                               {"02-00-A7-0B-1C-2D", ":A7.0b"},
                               {"0200.a70b.1c2d", "7:0b"},
                               {"02:00:A7:0B:1C:2D", "70:B", false},
                               {"0200A70B1C2D", "0:0a", false},
                               {"n/a", ":", false}}) {
            Fixture f(0);
            f.list.append(deviceWithMac(QLatin1String(row.stored)));
            f.view->updateContactModel();
            // Typed, so that each key searches among what the one before has found.
            QTest::keyClicks(f.bar->searchEdit(0), QLatin1String(row.keyword));
            QVERIFY2((f.rows() == 1) == row.isFound, row.keyword);
        }
    }

    void filterKeepsTheSelection()
    {
        const Fixture f(40);
        f.click(4, ContactModel::City);
        f.search(0, "5.mac"_s);
        QCOMPARE(f.current(), "4 0 d005.mac"_s);
        // A keyword in another box, which matches as well, empties the first box.
        f.search(5, "5"_s);
        QCOMPARE(f.bar->searchEdit(0)->text(), QString());
        QCOMPARE(f.current(), "4 0 d005.mac"_s);
        f.bar->searchEdit(5)->clear();
        QCOMPARE(f.current(), "4 4 d005.mac"_s);
        // A hidden device is not current. It becomes current again when it reappears.
        f.search(5, "9"_s);
        QCOMPARE(f.current(), "none"_s);
        f.bar->clear();
        QCOMPARE(f.current(), "4 4 d005.mac"_s);
    }

    void changesKeepPlaceAndSelection()
    {
        Fixture f(100, 500);
        QScrollBar *const bar = f.view->verticalScrollBar();
        f.view->selectRow(50);
        bar->setValue(1234);
        f.view->horizontalScrollBar()->setValue(100);
        const auto after = [&](int place) {
            f.view->updateContactModel();
            QCoreApplication::processEvents();
            return bar->value() == place && f.view->horizontalScrollBar()->value() == 100
                       ? f.current()
                       : "scrolled"_s;
        };
        f.list.removeAt(45);
        QCOMPARE(after(1234), "49 49 d051.mac"_s);
        f.list.removeAt(80);
        QCOMPARE(after(1234), "49 49 d051.mac"_s);
        f.list.replaceAt(49, stampedDevice("edited"_s));
        QCOMPARE(after(1234), "49 49 edited.mac"_s);
        f.list.append(Fixture::numbered(500));
        QCOMPARE(after(1234), "49 49 edited.mac"_s);
        // The device is also in the list that replaces this one.
        QList<ContactInfo> devices = f.list.snapshot().contacts();
        devices.append(Fixture::numbered(900));
        std::reverse(devices.begin(), devices.end());
        f.list.assign(devices);
        QCOMPARE(after(1234), "50 50 edited.mac"_s);
        // The current row is removed while it is out of sight. The view does not jump there.
        bar->setValue(0);
        f.list.removeAt(50);
        QVERIFY(!after(0).startsWith("scrolled"_s));
        f.list.clear();
        QCOMPARE(after(0), "none"_s);
    }

    void changesThatTheSearchHides()
    {
        Fixture f(30);
        HiddenNote note(*f.view, *f.bar, &f.window);
        const auto *const label = note.findChild<QLabel *>();
        QVERIFY(note.isHidden());
        f.search(0, "d01"_s);
        QCOMPARE(label->accessibleName(), "Hidden by the search: 20"_s);
        f.view->selectRow(1);
        f.list.replaceAt(10, stampedDevice("other"_s));
        f.view->updateContactModel();
        QCOMPARE(f.rows(), 9);
        QCOMPARE(f.current(), "none"_s);
        QCOMPARE(label->accessibleName(), "Hidden by the search: 21, new or changed: 1"_s);

        // A new device is shown at once, or when it arrives.
        f.view->showDevice("xd01.mac"_s);
        f.list.removeAt(9);
        f.list.append(stampedDevice("xd01"_s));
        f.view->updateContactModel();
        QCOMPARE(f.current(), "29 8 xd01.mac"_s);
        // Renumbered devices come and go with a filter on the number.
        f.search(5, "30"_s);
        f.list.removeAt(0);
        f.view->updateContactModel();
        QCOMPARE(f.rows(), 0);
        note.findChild<QAbstractButton *>()->click();
        QVERIFY(note.isHidden());
        QCOMPARE(f.rows(), 29);
    }

    void everyRowIsReadable()
    {
        Fixture f(3);
        f.view->selectRow(1);
        const QImage image = f.view->viewport()->grab().toImage();
        // These points are above the texts of the selected row and of the row before it.
        const QColor band = image.pixelColor(3, 34);
        const QColor plain = image.pixelColor(3, 4);
        QVERIFY(plain != band);
        RowPictures rowPictures;
        RowPictures::RowState state;
        for (const int place : {0, 1, 2, 3}) {
            state.selected = place & 1;
            state.hasNoPhone = place & 2;
            const QColor text = rowPictures.textColor(f.view->palette(), state);
            QVERIFY(RowPictures::contrast(text, state.selected ? band : plain) >= 4.5);
        }
    }

    void pointerMarksTheButton()
    {
        Fixture f(3);
        QWidget *const viewport = f.view->viewport();
        const auto *const hint = f.view->findChild<QLabel *>("cellHint"_s);
        const auto tipOver = [&](int column) {
            const QPoint place = f.cell(1, column);
            QTest::mouseMove(viewport, place);
            emit f.view->entered(f.proxy().index(1, column));
            QHelpEvent rest(QEvent::ToolTip, place, viewport->mapToGlobal(place));
            QCoreApplication::sendEvent(viewport, &rest);
            return hint->isVisible() ? hint->text() : QString();
        };
        // The tool tip covers neither the buttons of any row nor the row below.
        const auto isClear = [&](int lowest) {
            const QPoint eye = viewport->mapToGlobal(f.cell(1, ContactModel::Detail));
            return hint->geometry().right() < eye.x() - ContactDelegate::iconEdge / 2 &&
                   hint->geometry().bottom() <= eye.y() + lowest;
        };
        QCOMPARE(tipOver(ContactModel::Detail), "View/Edit"_s);
        QCOMPARE(tipOver(ContactModel::Delete), "Delete"_s);
        QVERIFY(isClear(ContactView::rowPixels / 2));
        QCOMPARE(viewport->cursor().shape(), Qt::PointingHandCursor);
        QVERIFY(tipOver(ContactModel::Mac).contains("No phone"_s));
        QCOMPARE(tipOver(ContactModel::City), QString());
        const PhonesSeen seen(f.list);
        f.view->setPhonesSeen(seen);
        f.list.replaceAt(1, deviceWithMac("02:00:A7:00:00:01"_s));
        f.view->updateContactModel();
        QVERIFY(!tipOver(ContactModel::Department).isEmpty());
        QVERIFY(isClear(-ContactView::rowPixels / 2));
    }
};

QTEST_MAIN(TestContactView)
#include "tst_contactview.moc"
