#pragma once

#include <QSortFilterProxyModel>

/// Shows the devices whose text in one column contains a keyword. Rows keep the order of the list.
class ContactFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit ContactFilter(QObject *parent = nullptr);

    /// Filters on `keyword` in `column`; an empty keyword shows every row. Row numbers are worked
    /// out once, in one pass over the list, whatever the number of rows that come or go. False when
    /// this filter was in force already and nothing had to be done.
    bool setKeyword(int column, const QString &keyword);

    /// The action columns are pictures, and the header is hidden: both speak to a screen reader.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    QString m_keyword;
    bool m_frozen = false;
};
