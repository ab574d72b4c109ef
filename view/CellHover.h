#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QPoint>

class ContactDelegate;
class QSize;
class QString;
class QTableView;
class ToolTipWidget;

/// Reacts to the pointer over the device list: marks the row and the button under the pointer, and
/// shows hints. A hint covers neither a button nor the row below, and never appears under the
/// pointer.
class CellHover : public QObject
{
    Q_OBJECT

public:
    /// Follows the pointer over `view`, the parent, whose cells `delegate` paints. Both must
    /// outlive this object.
    CellHover(QTableView &view, ContactDelegate &delegate);

    /// Determines again what is under the pointer. The wheel, a filter or a deletion moves rows
    /// under a pointer that stands still.
    void update();

    /// Hides the current hint. Shows the hint of this cell at once if it says what a click on a
    /// button does or what is wrong with the device. Any other hint appears when the pointer rests.
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
    QPoint m_pointer;               ///< in viewport coordinates; valid while m_pointerInside
    bool m_pointerInside = false;
    int m_row = -1;
    int m_column = -1;
};
