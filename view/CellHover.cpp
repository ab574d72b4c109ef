#include "view/CellHover.h"

#include "view/ContactDelegate.h"
#include "view/ContactModel.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QTableView>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int gap = 3; ///< between a hint and its cell

bool hasHintAtOnce(const QModelIndex &index)
{
    return ContactModel::isAction(index.column()) || index.data(ContactModel::NoMacRole).toBool();
}

} // namespace

CellHover::CellHover(QTableView &view, ContactDelegate &delegate)
    : QObject(&view)
    , m_view(view)
    , m_delegate(delegate)
{
    view.viewport()->installEventFilter(this);
}

bool CellHover::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseMove:
        m_pointer = static_cast<QMouseEvent *>(event)->pos();
        m_pointerInside = true;
        update();
        break;
    case QEvent::Leave:
    case QEvent::Hide:
        m_pointerInside = false;
        update();
        break;
    case QEvent::ToolTip: {
        const QModelIndex index = m_view.indexAt(static_cast<QHelpEvent *>(event)->pos());
        if (!hasHintAtOnce(index))
            showText(index, index.data(Qt::ToolTipRole).toString());
        return true;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void CellHover::update()
{
    const QModelIndex index = m_pointerInside ? m_view.indexAt(m_pointer) : QModelIndex();
    if (index.row() == m_row && index.column() == m_column)
        return;
    repaintRow(m_row);
    m_row = index.row();
    m_column = index.column();
    repaintRow(m_row);
    m_delegate.setHovered(m_row, m_column);
    m_view.viewport()->setCursor(ContactModel::isAction(m_column) ? Qt::PointingHandCursor
                                                                  : Qt::ArrowCursor);
}

void CellHover::repaintRow(int row)
{
    if (row >= 0)
        m_view.viewport()->update(0, m_view.rowViewportPosition(row), m_view.viewport()->width(),
                                  m_view.rowHeight(row));
}

void CellHover::showHint(const QModelIndex &index)
{
    QToolTip::showText(QPoint(), QString());
    if (!hasHintAtOnce(index))
        return;
    QString text = index.data(Qt::ToolTipRole).toString();
    if (ContactModel::isAction(index.column()))
        text = index.column() == ContactModel::Detail ? tr("View/Edit") : tr("Delete");
    showText(index, text);
}

void CellHover::showText(const QModelIndex &index, const QString &text)
{
    if (text.isEmpty())
        return;
    const QRect cell = m_view.visualRect(index);
    QToolTip::showText(m_view.viewport()->mapToGlobal(cell.topLeft()), text, m_view.viewport(),
                       cell);
    // Qt keeps it clear of the pointer, and thereby puts it over the row below.
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *const window : windows) {
        if (window->isVisible() && window->inherits("QTipLabel"))
            window->move(placeOf(index, *window));
    }
}

/// Beside the buttons on their left, and up from the lower edge; above any other cell.
QPoint CellHover::placeOf(const QModelIndex &index, const QWidget &hint) const
{
    const QRect cell = m_view.visualRect(index);
    const QSize size = hint.frameGeometry().size();
    QPoint place(cell.left(), cell.top() - gap - size.height());
    if (ContactModel::isAction(index.column())) {
        const int buttons = m_view.columnViewportPosition(ContactModel::Detail);
        place = QPoint(buttons - gap - size.width(), cell.bottom() - size.height());
    }
    place = m_view.viewport()->mapToGlobal(place);
    const QRect room = m_view.screen()->availableGeometry();
    place.setX(std::max(std::min(place.x(), room.right() - size.width()), room.left()));
    return place;
}
