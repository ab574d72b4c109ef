#include "view/ContactModel.h"

#include "model/MacAddress.h"
#include "model/PhonesSeen.h"

#include <algorithm>
#include <array>

ContactModel::ContactModel(const DeviceList &list, QObject *parent)
    : QAbstractTableModel(parent)
    , m_list(&list)
    , m_snapshot(list.snapshot())
{
}

int ContactModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_snapshot.size();
}

int ContactModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ContactModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_snapshot.size() || index.column() >= ColumnCount)
        return {};

    switch (role) {
    case Qt::DisplayRole:
        if (index.column() == Number)
            return shownNumber(index.row());
        return index.column() < Detail ? QVariant(text(index.row(), index.column())) : QVariant();
    case Qt::DecorationRole:
        return isAction(index.column()) ? QVariant(actionPicture(index.column())) : QVariant();
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return note(index.row(), index.column());
    case NoPhoneRole:
        return hasNoPhone(index.row()) ? QVariant(true) : QVariant();
    default:
        return {};
    }
}

Qt::DropActions ContactModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction;
}

bool ContactModel::insertRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || count < 1)
        return true;
    const DeviceListSnapshot fresh = m_list->snapshot();
    const bool trueToList = row <= m_snapshot.size() && fresh.size() == m_snapshot.size() + count;
    beginInsertRows(parent, row, row + count - 1);
    if (trueToList)
        adopt(fresh, row, m_snapshot.size() - row);
    endInsertRows();
    if (trueToList)
        announceNumbers();
    else
        announceReset();
    return true;
}

bool ContactModel::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || count < 1)
        return true;
    const DeviceListSnapshot fresh = m_list->snapshot();
    const bool trueToList =
        row + count <= m_snapshot.size() && fresh.size() == m_snapshot.size() - count;
    beginRemoveRows(parent, row, row + count - 1);
    if (trueToList)
        adopt(fresh, row, m_snapshot.size() - row - count);
    endRemoveRows();
    if (trueToList)
        announceNumbers();
    else
        announceReset();
    return true;
}

/// Starts over from the present list. A caller may have announced rows that the list does not have;
/// a view must not keep them.
void ContactModel::announceReset()
{
    beginResetModel();
    m_snapshot = m_list->snapshot();
    endResetModel();
}

void ContactModel::resetModel(bool displaySetting)
{
    beginResetModel();
    m_displaySetting = displaySetting;
    m_snapshot = m_list->snapshot();
    endResetModel();
}

int ContactModel::positionOfNumber(int number) const
{
    return number >= 1 && number <= m_snapshot.size() ? number - 1 : -1;
}

void ContactModel::refresh()
{
    const DeviceListSnapshot fresh = m_list->snapshot();
    if (fresh.version() == m_snapshot.version())
        return;

    const DeviceListSnapshot &before = m_snapshot;
    const int common = std::min(before.size(), fresh.size());
    int head = 0;
    while (head < common && before.isSameRecord(head, fresh, head))
        ++head;
    int tail = 0;
    while (tail < common - head &&
           before.isSameRecord(before.size() - 1 - tail, fresh, fresh.size() - 1 - tail))
        ++tail;
    const int gone = before.size() - head - tail;
    const int come = fresh.size() - head - tail;

    if (gone == 0 && come == 0) {
        adopt(fresh, head, tail);
    } else if (gone == 0) {
        beginInsertRows({}, head, head + come - 1);
        adopt(fresh, head, tail);
        endInsertRows();
    } else if (come == 0) {
        beginRemoveRows({}, head, head + gone - 1);
        adopt(fresh, head, tail);
        endRemoveRows();
    } else if (gone == come && (gone == 1 || head + tail > 0)) {
        adopt(fresh, head, tail);
        emit dataChanged(index(head, Number), index(head + come - 1, Detail - 1),
                         {Qt::DisplayRole});
    } else {
        announceReset();
        return;
    }
    announceNumbers();
}

void ContactModel::adopt(const DeviceListSnapshot &fresh, int head, int tail)
{
    m_renumbering = Renumbering{m_snapshot, head, tail};
    m_snapshot = fresh;
}

/// The devices around the changed stretch are the same, but their numbers may have changed.
void ContactModel::announceNumbers()
{
    const int tailRow = m_snapshot.size() - m_renumbering->tail;
    int first = m_snapshot.size();
    int last = -1;
    for (int row = 0; row < m_snapshot.size(); ++row) {
        if (row == m_renumbering->head)
            row = tailRow;
        if (row < m_snapshot.size() && shownNumber(row) != m_snapshot.at(row).number) {
            first = std::min(first, row);
            last = row;
        }
    }
    m_renumbering.reset();
    if (last >= first)
        emit dataChanged(index(first, Number), index(last, Number), {Qt::DisplayRole});
}

int ContactModel::shownNumber(int row) const
{
    if (m_renumbering) {
        const DeviceListSnapshot &before = m_renumbering->before;
        const int rowFromEnd = m_snapshot.size() - row;
        if (row < m_renumbering->head)
            return before.at(row).number;
        if (rowFromEnd <= m_renumbering->tail)
            return before.at(before.size() - rowFromEnd).number;
    }
    return m_snapshot.at(row).number;
}

ContactModel::Reach ContactModel::reachOf(int row) const
{
    const QString &mac = m_snapshot.infoAt(row).mac;
    if (!isMac(mac))
        return Reach::NoMac;
    // The same address may be spelled in another letter case, or the stored list hold it twice.
    return m_snapshot.rowOfBareMac(bareMac(mac)) == row ? Reach::Phone : Reach::SecondOf;
}

/// The hint of a cell: how the phone's last request went, or why there can be none.
QVariant ContactModel::note(int row, int column) const
{
    const Reach reach = reachOf(row);
    if (reach == Reach::Phone)
        return m_seen ? QVariant(m_seen->text(m_snapshot.infoAt(row).mac)) : QVariant();
    if (column != Mac)
        return {};
    return reach == Reach::NoMac
               ? tr("No phone will get the settings of this device. A MAC address has 12 "
                    "hexadecimal digits.")
               : tr("No phone will get the settings of this device. Another one above it has the "
                    "same MAC address.");
}

const QString &ContactModel::text(int row, int column) const
{
    static constexpr std::array<QString ContactInfo::*, ColumnCount> members = {
        nullptr,
        &ContactInfo::mac,
        &ContactInfo::product,
        &ContactInfo::sip_server,
        &ContactInfo::first_account,
        &ContactInfo::sip_user_id,
        &ContactInfo::city,
        &ContactInfo::company,
        &ContactInfo::department,
        nullptr,
        nullptr,
    };
    static const QString none;
    const auto member = members[static_cast<std::size_t>(column)];
    return member ? m_snapshot.infoAt(row).*member : none;
}

QPixmap ContactModel::actionPicture(int column) const
{
    if (!m_picturesLoaded) {
        m_eye.load(QStringLiteral("./resource/eye.png"));
        m_trash.load(QStringLiteral("./resource/trash.png"));
        m_picturesLoaded = true;
    }
    return column == Detail ? m_eye : m_trash;
}
