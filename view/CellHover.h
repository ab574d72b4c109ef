#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QPoint>

class ContactDelegate;
class QSize;
class QString;
class QTableView;
class ToolTipWidget;

/// What the pointer does over the device list: it marks the row and the button under it, and brings
/// up hints. A hint stands where it covers neither a button nor the row below, and never under the
/// pointer.
class CellHover : public QObject
{
    Q_OBJECT

public:
    /// Follows the pointer over `view`, the parent, whose cells `delegate` paints. Both outlive it.
    CellHover(QTableView &view, ContactDelegate &delegate);

    /// Looks what is under the pointer now: rows also move under one that stands still, by the
    /// wheel, a filter or a deletion.
    void update();

    /// Takes the hint away and brings up that of this cell, if it has one that is worth it at once:
    /// what a click on a button does, or what is wrong with the device. What else the model says
    /// comes up where the pointer rests for a moment.
    void showHint(const QModelIndex &index);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void repaintRow(int row);
    void showText(const QModelIndex &index, const QString &text);
    QPoint placeOf(const QModelIndex &index, const QSize &hint) const;
    int rightEdge() const;

    QTableView &m_view;
    ContactDelegate &m_delegate;
    ToolTipWidget *m_hint;
    QPersistentModelIndex m_hinted; ///< the cell of the last hint
    QPoint m_pointer;               ///< in the viewport; meaningful while m_pointerInside
    bool m_pointerInside = false;
    int m_row = -1;
    int m_column = -1;
};
