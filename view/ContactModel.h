#pragma once

#include "model/DeviceList.h"

#include <QAbstractTableModel>
#include <QPixmap>

#include <optional>

class PhonesSeen;

/// The device list as a table: nine columns of text and two of pictures that act as buttons.
///
/// Works on a snapshot, so what is on show stays consistent while the list changes; refresh() takes
/// the next one. Read only: the list is changed by its owner. GUI thread.
class ContactModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// The primary account stands before the user id, the reverse of the record's order.
    enum Column {
        Number,
        Mac,
        Product,
        SipServer,
        FirstAccount,
        SipUserId,
        City,
        Company,
        Department,
        Detail,
        Delete,
        ColumnCount
    };

    /// Whether a click in `column` does something to its device.
    static constexpr bool isAction(int column) { return column == Detail || column == Delete; }

    /// Beside the usual roles.
    enum Role {
        /// True in every cell of a device that has no MAC: no phone can ask for its document.
        NoMacRole = Qt::UserRole,
    };

    /// `list` is not owned and must outlive the model.
    explicit ContactModel(const DeviceList &list, QObject *parent = nullptr);

    /// Has the cells tell which telephones have asked for their files. `seen` must outlive the
    /// model.
    void setPhonesSeen(const PhonesSeen &seen) { m_seen = &seen; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::DropActions supportedDropActions() const override;

    /// Announces that the list has already received `count` devices from `row` on, and takes its
    /// present contents. Always true.
    /// Part of the interface; nothing here calls it.
    bool insertRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;
    /// Announces that the list has already lost the `count` devices from `row` on, and takes its
    /// present contents. Always true.
    /// Part of the interface; nothing here calls it.
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

    /// Keeps the display setting and starts over from the present list.
    /// Part of the interface; nothing here calls it.
    void resetModel(bool displaySetting);
    bool displaySetting() const { return m_displaySetting; }

    /// Row of the device with this running number, or -1.
    /// Part of the interface; nothing here calls it.
    int positionOfNumber(int number) const;

    /// Takes the present contents of the list and announces the smallest change that explains the
    /// difference, so that views keep scroll position and selection. O(n), without effect when
    /// nothing changed.
    void refresh();

    /// The running number of the device at `row` (must exist), as the views know it by now.
    int shownNumber(int row) const;
    /// The text of the device at `row` (must exist) in `column`; empty in columns without one.
    const QString &text(int row, int column) const;

    /// What is on show.
    const DeviceListSnapshot &snapshot() const { return m_snapshot; }

private:
    /// While rows come or go: the devices that stay (`head` of them in front, `tail` at the end)
    /// keep the numbers they had, as a view must not see a number change before it is told.
    struct Renumbering
    {
        DeviceListSnapshot before;
        int head = 0;
        int tail = 0;
    };

    void adopt(const DeviceListSnapshot &fresh, int head, int tail);
    void announceNumbers();
    void announceReset();
    bool lacksMac(int row) const;
    QVariant note(int row, int column) const;
    QPixmap actionPicture(int column) const;

    const DeviceList *m_list;
    const PhonesSeen *m_seen = nullptr;
    DeviceListSnapshot m_snapshot;
    std::optional<Renumbering> m_renumbering;
    bool m_displaySetting = false;
    mutable bool m_picturesLoaded = false;
    mutable QPixmap m_eye;
    mutable QPixmap m_trash;
};
