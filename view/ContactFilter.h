#pragma once

#include "model/DeviceList.h"

#include <QBitArray>
#include <QSortFilterProxyModel>

class ContactModel;

/// Shows the devices whose text in one column contains a keyword, whatever the case of its letters.
/// A MAC address is found by its digits, however it and the keyword part them. Rows keep the order
/// of the list.
class ContactFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /// Filters `model`, which is not owned and must outlive the filter.
    explicit ContactFilter(ContactModel &model, QObject *parent = nullptr);

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
    /// Which rows of one state of the list are shown.
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
    QString m_folded;      ///< without the case of its letters
    QString m_digits;      ///< without what parts the bytes of an address
    int m_firstGroup = -1; ///< the digits in front of the first separator; -1 without one
    Accepted m_accepted;
};
