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

    /// The name of a table column in the user's language; empty for an invalid column.
    static QString columnName(int column);
};
