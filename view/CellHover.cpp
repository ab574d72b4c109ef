#include "view/CellHover.h"

#include "view/ContactDelegate.h"
#include "view/ContactModel.h"
#include "widgets/Grid.h"
#include "widgets/ToolTipWidget.h"

#include <QMouseEvent>
#include <QScreen>
#include <QTableView>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int gap = 3; ///< between a hint and its cell, or the buttons
constexpr int hintMilliseconds = 10000;

bool hasHintAtOnce(const QModelIndex &index)
{
    return ContactModel::isAction(index.column()) || index.data(ContactModel::NoPhoneRole).toBool();
}

} // namespace

CellHover::CellHover(QTableView &view, ContactDelegate &delegate)
    : QObject(&view)
    , m_view(view)
    , m_delegate(delegate)
    , m_hint(new ToolTipWidget(&view))
{
    m_hint->setObjectName(QStringLiteral("cellHint"));
    m_hint->setMargin(gridPx / 2); // keeps a hint no higher than a row
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
        m_hint->hide();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::WindowDeactivate:
        m_hint->hide();
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
    if (m_hinted != index)
        m_hint->hide();
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
    QToolTip::hideText();
    m_hint->hide();
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
    m_hinted = index;
    const int widest = rightEdge() - m_view.screen()->availableGeometry().left();
    m_hint->showHint(
        text, m_view.viewport(), widest, [&](const QSize &size) { return placeOf(index, size); },
        hintMilliseconds);
}

/// The right limit of a hint, in screen coordinates: just left of the button columns.
int CellHover::rightEdge() const
{
    const int left =
        std::min(m_view.columnViewportPosition(ContactModel::Detail), m_view.viewport()->width());
    return std::min(m_view.viewport()->mapToGlobal(QPoint(left, 0)).x() - gap,
                    m_view.screen()->availableGeometry().right());
}

/// The hint of a button stands left of the buttons and grows upwards; any other, above its cell.
QPoint CellHover::placeOf(const QModelIndex &index, const QSize &hint) const
{
    const QRect cell = m_view.visualRect(index);
    const QPoint corner = m_view.viewport()->mapToGlobal(cell.topLeft());
    const int rightmost = rightEdge() - hint.width();
    if (ContactModel::isAction(index.column()))
        return {rightmost, corner.y() + cell.height() - hint.height()};
    const int leftmost = m_view.screen()->availableGeometry().left();
    return {std::max(std::min(corner.x(), rightmost), leftmost), corner.y() - gap - hint.height()};
}
