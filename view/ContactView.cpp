#include "view/ContactView.h"

#include "model/DebugLog.h"
#include "view/ColumnLayout.h"
#include "view/ContactDelegate.h"
#include "view/ContactFilter.h"
#include "view/ContactModel.h"
#include "view/SearchEdit.h"
#include "widgets/EffectScrollBar.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

namespace {

bool isAction(int column)
{
    return column == ContactModel::Detail || column == ContactModel::Delete;
}

} // namespace

ContactView::ContactView(const DeviceList &list, QWidget *parent)
    : QTableView(parent)
    , m_model(new ContactModel(list, this))
    , m_filter(new ContactFilter(*m_model, this))
    , m_delegate(new ContactDelegate(m_pictures, this))
{
    setObjectName(QStringLiteral("contact_view"));
    setAccessibleName(tr("Device list"));
    setModel(m_filter);
    setItemDelegate(m_delegate);
    setUpLook();
    layOutColumns();

    connect(this, &QAbstractItemView::entered, this, &ContactView::showToolTip);
    connect(this, &QAbstractItemView::clicked, this, &ContactView::viewClicked);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ContactView::changeScrollValue);
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, &ContactView::updateHover);
}

ContactView::~ContactView() = default;

void ContactView::setUpLook()
{
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setWordWrap(false);
    setMouseTracking(true);
    setVerticalScrollBar(new EffectScrollBar(Qt::Vertical));
    setHorizontalScrollBar(new EffectScrollBar(Qt::Horizontal));
    // By pixel, so that the scroll bar's value is the offset of the first row.
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);

    horizontalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(rowPixels);
    verticalHeader()->setDefaultSectionSize(rowPixels);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

void ContactView::layOutColumns()
{
    const ColumnLayout::Widths widths = ColumnLayout::widths(
        viewport()->width(), ColumnLayout::minimums(fontMetrics(), deviceCount()));
    for (int column = 0; column < ContactModel::ColumnCount; ++column)
        setColumnWidth(column, widths[static_cast<std::size_t>(column)]);
}

void ContactView::setBusy(bool busy)
{
    m_busy = busy;
    if (!m_busy && m_updateMissed)
        updateContactModel();
}

void ContactView::addSearchEdit(SearchEdit *edit)
{
    m_searchEdits.append(edit);
    connect(edit, &SearchEdit::searchTextChanged, this, &ContactView::onSearchTextChanged);
    connect(edit, &QLineEdit::returnPressed, this, &ContactView::clearSearchEditFocus);
}

int ContactView::deviceCount() const
{
    return m_model->rowCount();
}

int ContactView::currentListRow() const
{
    return listRow(currentIndex());
}

int ContactView::selectionState() const
{
    return selectionModel()->selectedRows().size();
}

int ContactView::listRow(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != m_filter)
        return -1;
    return m_filter->mapToSource(index).row();
}

/// Makes the device at `row` of the list the current one, where the filter shows it.
void ContactView::selectListRow(int row, bool select)
{
    const QModelIndex index = m_filter->mapFromSource(m_model->index(row, ContactModel::Number));
    if (!index.isValid())
        return;
    selectionModel()->setCurrentIndex(index, select ? QItemSelectionModel::ClearAndSelect |
                                                          QItemSelectionModel::Rows
                                                    : QItemSelectionModel::NoUpdate);
}

void ContactView::onSearchTextChanged(int index, const QString &keyword)
{
    emit onSearchState();
    applyKeyword(index, keyword);
}

void ContactView::sortBySearchEdit(int index, const QString &keyword)
{
    qCDebug(debugLog) << "sortBySearchEdit index = " << index << "keyword = " << keyword
                      << "column = " << SearchEdit::columnOf(index);
    applyKeyword(index, keyword);
}

/// Whoever reports a keyword may report it twice; the filter works only once.
void ContactView::applyKeyword(int index, const QString &keyword)
{
    const bool changed = keyword.isEmpty()
                             ? m_filter->setKeyword(ContactModel::Number, QString())
                             : m_filter->setKeyword(SearchEdit::columnOf(index), keyword.trimmed());
    if (!changed)
        return;
    executeDelayedItemsLayout();
    if (currentIndex().isValid())
        scrollTo(currentIndex());
    updateHover();
}

void ContactView::changeBatchState()
{
    m_batchState = !m_batchState;
}

void ContactView::addNewContact()
{
    emit addNewContactByGroup();
}

void ContactView::showGroupContacts(int first, int last)
{
    executeDelayedItemsLayout();
    scrollTo(m_filter->mapFromSource(m_model->index(last, ContactModel::Number)));
    selectListRow(first, true);
    scrollTo(currentIndex());
    emit changeContact(first, last);
}

void ContactView::updateContactModel()
{
    qCDebug(debugLog) << "updateContactModel.";
    m_updateMissed = m_busy;
    if (m_busy)
        return;

    const int row = currentListRow();
    const QString mac = row < 0 ? QString() : m_model->snapshot().at(row).info.mac;
    const bool selected = selectionState() > 0;
    const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());

    m_model->refresh();

    // Where the list was replaced, the device that the user was at may stand elsewhere.
    const int present = currentListRow();
    if (row >= 0 && (present < 0 || m_model->snapshot().at(present).info.mac != mac)) {
        const int moved = m_model->snapshot().rowOfMac(mac);
        if (moved >= 0)
            selectListRow(moved, selected);
    }
    layOutColumns();
    executeDelayedItemsLayout();
    // A current row that moves is not a reason to scroll there.
    horizontalScrollBar()->setValue(scrolled.x());
    verticalScrollBar()->setValue(scrolled.y());
    updateHover();

    if (m_model->rowCount() == 0)
        emit showNobodyPreview();
    emit viewUpdated();
}

void ContactView::changeScrollValue(int value)
{
    m_verticalOffset = value;
    updateHover();
}

void ContactView::clearSearchEditFocus()
{
    for (const QPointer<SearchEdit> &edit : qAsConst(m_searchEdits)) {
        if (edit && edit->hasFocus())
            setFocus(Qt::OtherFocusReason);
    }
}

void ContactView::viewClicked(const QModelIndex &index)
{
    const int row = listRow(index);
    if (row < 0)
        return;
    if (index.column() == ContactModel::Detail)
        openRow(index);
    else if (index.column() == ContactModel::Delete)
        emit onRowDelete(row);
}

void ContactView::openRow(const QModelIndex &index)
{
    m_markedRowNumber = index.row() + 1;
    emit checkDetailValue();
    emit onRowDetail(listRow(index));
}

void ContactView::showToolTip(const QModelIndex &index)
{
    QToolTip::showText(QPoint(), QString());
    QString tip = index.data(Qt::ToolTipRole).toString();
    if (isAction(index.column()))
        tip = index.column() == ContactModel::Detail ? tr("View/Edit") : tr("Delete");
    if (tip.isEmpty())
        return;
    const QRect cell = visualRect(index);
    QToolTip::showText(viewport()->mapToGlobal(cell.topLeft()), tip, viewport(), cell);
}

void ContactView::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier &&
        currentIndex().isValid()) {
        // A held key opens the device once.
        if (!event->isAutoRepeat())
            openRow(currentIndex());
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void ContactView::mousePressEvent(QMouseEvent *event)
{
    m_ignoreRelease = false;
    const int y = qRound(event->localPos().y()) + m_verticalOffset;
    m_press.rowNumber = y / rowPixels + 1;
    m_press.offsetInRow = y % rowPixels;
    m_press.pressed = !m_batchState;
    if (m_press.pressed && m_press.rowNumber == m_markedRowNumber)
        selectRow(m_press.rowNumber - 1);
    QTableView::mousePressEvent(event);
}

void ContactView::mouseDoubleClickEvent(QMouseEvent *event)
{
    // The first release has acted already, and the row now under the pointer may be another
    // device: the second half of a double click on a button does nothing.
    if (isAction(columnAt(event->pos().x()))) {
        m_ignoreRelease = true;
        event->accept();
        return;
    }
    QTableView::mouseDoubleClickEvent(event);
}

void ContactView::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_ignoreRelease) {
        m_ignoreRelease = false;
        event->accept();
        return;
    }
    QTableView::mouseReleaseEvent(event);
}

void ContactView::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    layOutColumns();
}

void ContactView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        layOutColumns();
}

bool ContactView::viewportEvent(QEvent *event)
{
    const bool handled = QTableView::viewportEvent(event);
    if (event->type() == QEvent::MouseMove) {
        m_pointer = static_cast<QMouseEvent *>(event)->pos();
        m_pointerInside = true;
        updateHover();
    } else if (event->type() == QEvent::Leave || event->type() == QEvent::Hide) {
        m_pointerInside = false;
        updateHover();
    }
    return handled;
}

/// Rows also move under a pointer that stands still: by the wheel, a filter or a deletion.
void ContactView::updateHover()
{
    const QModelIndex index = m_pointerInside ? indexAt(m_pointer) : QModelIndex();
    if (index.row() == m_hoveredRow && index.column() == m_hoveredColumn)
        return;
    repaintRow(m_hoveredRow);
    m_hoveredRow = index.row();
    m_hoveredColumn = index.column();
    repaintRow(m_hoveredRow);
    m_delegate->setHovered(m_hoveredRow, m_hoveredColumn);
    viewport()->setCursor(isAction(m_hoveredColumn) ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void ContactView::repaintRow(int row)
{
    if (row >= 0)
        viewport()->update(0, rowViewportPosition(row), viewport()->width(), rowPixels);
}

void ContactView::paintEvent(QPaintEvent *event)
{
    if (selectionModel()->hasSelection())
        m_pictures.prepareSelectedRow();
    QTableView::paintEvent(event);

    QPainter painter(viewport());
    if (m_filter->rowCount() == 0) {
        paintHint(painter);
        return;
    }
    paintSeparators(painter, event->rect());
    if (hasFocus())
        paintFocus(painter);
}

void ContactView::paintSeparators(QPainter &painter, const QRect &exposed)
{
    const int first = rowAt(exposed.top());
    if (first < 0)
        return;
    const int left = columnViewportPosition(0);
    const int width = horizontalHeader()->length();
    for (int row = first; row < m_filter->rowCount(); ++row) {
        const int top = rowViewportPosition(row);
        if (top > exposed.bottom())
            break;
        m_pictures.paintSeparator(painter, QRect(left, top, width, rowPixels), palette());
    }
}

/// A frame around the row that the keyboard acts on.
void ContactView::paintFocus(QPainter &painter)
{
    if (!currentIndex().isValid())
        return;
    RowPictures::RowState state;
    state.selected = selectionModel()->isSelected(currentIndex());
    QColor line = m_pictures.textColor(palette(), state);
    line.setAlpha(130);
    painter.setPen(line);
    painter.drawRect(columnViewportPosition(0), rowViewportPosition(currentIndex().row()),
                     horizontalHeader()->length() - 1, rowPixels - 1);
}

void ContactView::paintHint(QPainter &painter)
{
    QColor color = palette().color(QPalette::Text);
    color.setAlpha(180);
    painter.setPen(color);
    painter.drawText(
        viewport()->rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap,
        m_model->rowCount() == 0 ? tr("No devices yet. Press \"New\" to create the first one.")
                                 : tr("No device matches the search."));
}
