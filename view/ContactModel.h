#pragma once

#include "model/DeviceList.h"

#include <QAbstractTableModel>
#include <QPixmap>

#include <optional>

class PhonesSeen;

/// The device list as a table: nine columns of text and two of pictures that act as buttons.
///
/// Works on a snapshot, so the rows stay consistent while the list changes; refresh() takes the
/// next snapshot. Read-only: only the owner of the list changes it. GUI thread.
class ContactModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// The primary account stands before the user ID, the reverse of their order in the record.
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

    /// Whether a click in `column` opens or deletes the device.
    static constexpr bool isAction(int column) { return column == Detail || column == Delete; }

    /// Roles in addition to those of Qt.
    enum Role {
        /// True in every cell of a device whose settings no phone gets.
        NoPhoneRole = Qt::UserRole,
    };

    /// `list` is not owned and must outlive the model.
    explicit ContactModel(const DeviceList &list, QObject *parent = nullptr);

    /// Makes the hints of the cells tell which phones have asked for their files. `seen` must
    /// outlive the model.
    void setPhonesSeen(const PhonesSeen &seen) { m_seen = &seen; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::DropActions supportedDropActions() const override;

    /// Announces that the list has already received `count` devices from `row` on, and takes the
    /// present list. Always returns true.
    /// Part of the interface; nothing here calls it.
    bool insertRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;
    /// Announces that the list has already lost the `count` devices from `row` on, and takes the
    /// present list. Always returns true.
    /// Part of the interface; nothing here calls it.
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

    /// Stores the display setting and resets the model to the present list.
    /// Part of the interface; nothing here calls this or the next one.
    void resetModel(bool displaySetting);
    bool displaySetting() const { return m_displaySetting; }

    /// The row of the device with this running number, or -1.
    /// Part of the interface; nothing here calls it.
    int positionOfNumber(int number) const;

    /// Takes the present list and announces the smallest change that explains the difference, so
    /// that views keep their scroll position and selection. O(n); has no effect if nothing changed.
    void refresh();

    /// The running number of the device at `row` (must exist), as last announced to the views.
    int shownNumber(int row) const;
    /// The text of the device at `row` (must exist) in `column`; empty in columns without one.
    const QString &text(int row, int column) const;

    /// The state of the list that the model shows.
    const DeviceListSnapshot &snapshot() const { return m_snapshot; }

private:
    /// Used while rows come or go. The devices that stay, `head` in front and `tail` at the end,
    /// keep their old numbers, as a view must not see a number change before it is announced.
    struct Renumbering
    {
        DeviceListSnapshot before;
        int head = 0;
        int tail = 0;
    };

    /// Who gets the settings of a device.
    enum class Reach {
        Phone,
        NoMac,    ///< nobody: no phone has such a MAC
        SecondOf, ///< nobody: its phone gets the settings of the first device with the same MAC
    };

    void adopt(const DeviceListSnapshot &fresh, int head, int tail);
    void announceNumbers();
    void announceReset();
    bool hasNoPhone(int row) const { return reachOf(row) != Reach::Phone; }
    Reach reachOf(int row) const;
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
