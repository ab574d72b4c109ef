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
/// The view changes nothing itself: it reports what the user asks for, with rows of the device
/// list, whatever filter is on, and shows the list anew on updateContactModel(). GUI thread.
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

    /// Takes the keywords of this box. It is not owned.
    void addSearchEdit(SearchEdit *edit);

    /// Number of devices in the list as it is on show, filtered or not.
    int deviceCount() const;

    /// Number of devices in it that the search hides.
    int hiddenCount() const;

    /// With the next update, brings the device with this MAC text into view and selects it, as far
    /// as the search shows it. An empty text takes that back.
    void showDevice(const QString &mac);

    /// After the list that an update took away has come back: the row that was current in it, and
    /// the scroll position, unless another device of it is current.
    void returnToLostPlace();

    /// Row in the list of the device that this index of the view's model shows, or -1.
    int listRow(const QModelIndex &index) const;

    /// Row of the current device in the list, or -1, also while the search hides that device.
    int currentListRow() const;

    /// Number of selected rows.
    int selectionState() const;

    /// Where the mouse was pressed last: the row, counted from 1, the position inside the row, and
    /// whether the press counts (it does not while a batch is being put together).
    struct Press
    {
        int rowNumber = 0;
        int offsetInRow = 0;
        bool pressed = false;
    };
    /// Part of the interface; nothing here calls it.
    const Press &lastPress() const { return m_press; }

signals:
    /// The list on show has no device any more.
    /// Part of the interface; nothing here connects to it.
    void showNobodyPreview();
    /// A device is to be added; see addNewContact().
    /// Part of the interface; nothing here connects to it.
    void addNewContactByGroup();
    /// The user has changed a keyword.
    /// Part of the interface; nothing here connects to it.
    void onSearchState();
    /// The stretch of list rows from `first` to `last` has been brought into view.
    /// Part of the interface; nothing here connects to it.
    void changeContact(int first, int last);
    /// A device is about to be opened.
    /// Part of the interface; nothing here connects to it.
    void checkDetailValue();
    /// The device at this row of the list is to be opened.
    void onRowDetail(int row);
    /// The device at this row of the list is to be deleted.
    void onRowDelete(int row);
    /// The view shows the list's present contents.
    void viewUpdated();

public slots:
    /// A search box reports its text.
    void onSearchTextChanged(int index, const QString &keyword);
    /// Turns the batch state, in which a press on the marked row does not select it, on or off.
    /// Part of the interface; nothing here calls it.
    void changeBatchState();
    /// Asks for a new device.
    /// Part of the interface; nothing here calls it.
    void addNewContact();
    /// Brings the rows from `first` to `last` of the list into view and selects the first.
    void showGroupContacts(int first, int last);
    /// Brings the view up to date with the list.
    void updateContactModel();
    /// The view has been scrolled down to this pixel.
    void changeScrollValue(int value);
    /// Takes the keyboard from the search boxes to the rows.
    void clearSearchEditFocus();
    /// Acts on a click: the eye opens, the trash can deletes.
    void viewClicked(const QModelIndex &index);
    /// Shows only the devices with `keyword` in the column of search box `index`.
    void sortBySearchEdit(int index, const QString &keyword);
    /// Says what a click on this cell does.
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

    /// The device that the user is at, in the model. The search may hide it: then no row is
    /// current.
    QPersistentModelIndex m_device;
    bool m_deviceSelected = false;
    bool m_keepingDevice = false; ///< rows change by themselves, and not by the user's choice
    QString m_wantedMac;          ///< see showDevice()

    /// Where the user was when an update took his device away.
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
    bool m_ignoreRelease = false; ///< the coming release ends a click that does nothing
};
