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
    /// Follows `table` on behalf of `bar`, and lives as long as the bar, its parent. Without
    /// effect once the table is gone.
    ColumnFollower(QTableView &table, QWidget &bar);

    /// Puts `widget`, a child of the bar, over `column` from now on.
    void add(int column, QWidget *widget);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Entry
    {
        int column;
        QWidget *widget;
    };

    void align();
    /// Where the table's first pixel column lies in the bar.
    int tableLeft() const;

    QPointer<QTableView> m_table;
    QWidget &m_bar;
    QVector<Entry> m_entries;
};
