#pragma once

#include <QObject>
#include <QPointer>
#include <QVector>

class QTableView;
class QWidget;

/// Keeps the widgets of a bar exactly over the columns of a table, at every width and at every
/// horizontal scroll position.
class ColumnFollower : public QObject
{
    Q_OBJECT

public:
    /// Follows `table`. `bar` becomes the parent and so the owner. Has no effect once the table is
    /// gone.
    ColumnFollower(QTableView &table, QWidget &bar);

    /// Keeps `widget`, a child of the bar, over `column` from now on.
    void add(int column, QWidget *widget);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Entry
    {
        int column;
        QWidget *widget;
    };

    void align();
    /// The x coordinate, in the bar, of the left edge of the table's viewport.
    int tableLeft() const;

    QPointer<QTableView> m_table;
    QWidget &m_bar;
    QVector<Entry> m_entries;
};
