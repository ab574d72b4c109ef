#pragma once

#include "model/DeviceList.h"

#include <QBitArray>
#include <QSortFilterProxyModel>

class ContactModel;

/// Shows the devices whose text in one column contains a keyword; case does not matter. A MAC
/// address matches by its digits, whatever separators it and the keyword use. Rows keep the order
/// of the list.
class ContactFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /// Filters `model`, which is not owned and must outlive the filter.
    explicit ContactFilter(ContactModel &model, QObject *parent = nullptr);

    /// Filters on `keyword` in `column`; an empty keyword shows every row. Takes one pass over the
    /// list, however many rows appear or disappear. Returns false, and does nothing, if this filter
    /// is already in force.
    bool setKeyword(int column, const QString &keyword);

    /// Names the action columns, which hold pictures, and the hidden header for screen readers.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    /// The rows that are shown, for one version of the list.
    struct Accepted
    {
        quint64 version = 0;
        QBitArray rows;
    };

    bool isCurrent(const Accepted &accepted) const;
    bool matches(int row) const;
    bool matchesMac(const QString &mac) const;
    void acceptRows(bool narrower);
    void takeKeyword(const QString &keyword);

    const ContactModel &m_model;
    QString m_keyword;     ///< as it was given
    QString m_folded;      ///< the keyword, case-folded
    QString m_digits;      ///< the folded keyword without separators
    int m_firstGroup = -1; ///< characters before the first separator; -1 without one
    Accepted m_accepted;
};
