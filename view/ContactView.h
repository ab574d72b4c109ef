#pragma once

#include "view/ClickSeries.h"
#include "view/RowPictures.h"

#include <QPersistentModelIndex>
#include <QPointer>
#include <QTableView>
#include <QVector>

#include <functional>

class CellHover;
class ContactDelegate;
class ContactFilter;
class ContactModel;
class DeviceList;
class PhonesSeen;
class SearchEdit;

/// The device list on screen: one row of 30 pixels per device, with a button that opens the device
/// and one that deletes it.
///
/// The view never changes the list. It reports what the user asks for, with row numbers of the list
/// whatever filter is on, and shows the present list after updateContactModel(). GUI thread.
class ContactView : public QTableView
{
    Q_OBJECT

public:
    static constexpr int rowPixels = 30;

    /// Shows `list`, which is not owned and must outlive the view.
    explicit ContactView(const DeviceList &list, QWidget *parent = nullptr);
    ~ContactView() override;

    /// See ContactModel.
    void setPhonesSeen(const PhonesSeen &seen);

    /// Filters by the keywords of `edit`, which is not owned.
    void addSearchEdit(SearchEdit *edit);

    /// Number of devices in the list that the view shows, hidden ones included.
    int deviceCount() const;

    /// Number of devices that the search hides.
    int hiddenCount() const;

    /// Makes the next update bring the device with this MAC text into view and select it, unless
    /// the search hides it. An empty text cancels that.
    void showDevice(const QString &mac);

    /// Restores the current row and the scroll position from before an update removed the current
    /// device; call it once that update is undone. If another device is current by then, only
    /// scrolls to it.
    void returnToLostPlace();

    /// The list row of the device at `index`, an index of the view's model, or -1.
    int listRow(const QModelIndex &index) const;

    /// The list row of the current device; -1 without one, or while the search hides it.
    int currentListRow() const;

    /// Number of selected rows.
    int selectionState() const;

    /// The last mouse press: the row, counted from 1, the vertical offset inside the row, and
    /// whether the press counts (it does not in the batch state).
    struct Press
    {
        int rowNumber = 0;
        int offsetInRow = 0;
        bool pressed = false;
    };
    /// Part of the interface; nothing here calls it.
    const Press &lastPress() const { return m_press; }

signals:
    /// The view was updated and the list is empty.
    /// Part of the interface; nothing here connects to it.
    void showNobodyPreview();
    /// A device is to be added; see addNewContact().
    /// Part of the interface; nothing here connects to it.
    void addNewContactByGroup();
    /// The user has changed a keyword.
    /// Part of the interface; nothing here connects to it.
    void onSearchState();
    /// The list rows from `first` to `last` have been brought into view.
    /// Part of the interface; nothing here connects to it.
    void changeContact(int first, int last);
    /// A device is about to be opened.
    /// Part of the interface; nothing here connects to it.
    void checkDetailValue();
    /// The device at this row of the list is to be opened.
    void onRowDetail(int row);
    /// The device at this row of the list is to be deleted.
    void onRowDelete(int row);
    /// The view now shows the present list.
    void viewUpdated();

public slots:
    /// Filters by the text that a search box reports.
    void onSearchTextChanged(int index, const QString &keyword);
    /// Turns the batch state, in which a press does not count (see Press), on or off.
    /// Part of the interface; nothing here calls it.
    void changeBatchState();
    /// Asks for a new device.
    /// Part of the interface; nothing here calls it.
    void addNewContact();
    /// Brings the list rows from `first` to `last` into view and selects the first.
    void showGroupContacts(int first, int last);
    /// Brings the view up to date with the list.
    void updateContactModel();
    /// Follows the vertical scroll bar; `value` is in pixels.
    void changeScrollValue(int value);
    /// Moves the focus from a search box to the rows.
    void clearSearchEditFocus();
    /// Acts on a click: the eye opens the device, the trash can deletes it.
    void viewClicked(const QModelIndex &index);
    /// Shows only the devices with `keyword` in the column of search box `index`.
    void sortBySearchEdit(int index, const QString &keyword);
    /// Shows the hint of this cell; see CellHover::showHint().
    void showToolTip(const QModelIndex &index);

protected:
    void changeEvent(QEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setUpLook();
    void layOutColumns();
    void applyKeyword(int index, const QString &keyword);
    void openRow(const QModelIndex &index);
    void makeCurrent(const QModelIndex &index, bool select);
    void keepDevice(const std::function<void()> &change);
    void showWantedDevice();
    void paintSeparators(QPainter &painter, const QRect &exposed);
    void paintFocus(QPainter &painter);
    void paintHint(QPainter &painter);

    RowPictures m_pictures;
    ContactModel *m_model;
    ContactFilter *m_filter;
    ContactDelegate *m_delegate;
    CellHover *m_hover;
    QVector<QPointer<SearchEdit>> m_searchEdits;

    /// The device that the user is at, in m_model. While the search hides it, no row is current.
    QPersistentModelIndex m_device;
    bool m_deviceSelected = false;
    bool m_keepingDevice = false; ///< the rows are changing, not by the user's choice
    QString m_wantedMac;          ///< see showDevice()

    /// Where the user was when an update took the current device away.
    struct Place
    {
        int row = 0;
        int scrolled = 0;
    };
    Place m_lostPlace;

    Press m_press;
    bool m_batchState = false;
    int m_markedRowNumber = 0; ///< the row opened last, counted from 1
    int m_verticalOffset = 0;
    ClickSeries m_clicks;
    bool m_ignoreRelease = false; ///< the next release ends a click that must do nothing
};
