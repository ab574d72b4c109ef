#pragma once

#include <QFrame>

class QTableView;

/// The column header of the device list: nine labels over the columns from product to delete.
class ContactTitle : public QFrame
{
    Q_OBJECT

public:
    /// `table` is not owned; the labels follow its columns.
    explicit ContactTitle(QTableView &table, QWidget *parent = nullptr);

    /// What a table column is called, in the user's language; empty for a column that is none.
    static QString columnName(int column);
};
