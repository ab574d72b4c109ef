#include "view/ContactFilter.h"

#include "view/ContactModel.h"
#include "view/ContactTitle.h"

ContactFilter::ContactFilter(QObject *parent)
    : QSortFilterProxyModel(parent)
{
}

bool ContactFilter::setKeyword(int column, const QString &keyword)
{
    if (column == filterKeyColumn() && keyword == m_keyword)
        return false;

    // Left to itself the base class takes rows out and puts them in one stretch at a time, which is
    // quadratic for a keyword that matches here and there: seconds for a hundred thousand devices.
    // So the new rule is set while every row stays as it is, and then the mapping is built anew.
    // The present one must exist by then: it is what the rows stay by.
    rowCount();
    m_frozen = true;
    m_keyword = keyword;
    setFilterKeyColumn(column);
    setFilterFixedString(keyword);
    m_frozen = false;
    invalidate();
    return true;
}

bool ContactFilter::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (m_frozen)
        return mapFromSource(sourceModel()->index(sourceRow, 0, sourceParent)).isValid();
    return QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent);
}

QVariant ContactFilter::data(const QModelIndex &index, int role) const
{
    if (role == Qt::AccessibleTextRole && index.isValid() && index.column() >= ContactModel::Detail)
        return ContactTitle::columnName(index.column());
    return QSortFilterProxyModel::data(index, role);
}

QVariant ContactFilter::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return ContactTitle::columnName(section);
    return QSortFilterProxyModel::headerData(section, orientation, role);
}
