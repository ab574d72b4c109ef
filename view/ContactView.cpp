#include "view/ContactView.h"

#include "model/DebugLog.h"
#include "view/CellHover.h"
#include "view/ColumnLayout.h"
#include "view/ContactDelegate.h"
#include "view/ContactFilter.h"
#include "view/ContactModel.h"
#include "view/SearchEdit.h"
#include "widgets/DevicePixels.h"
#include "widgets/EffectScrollBar.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScopedValueRollback>

#include <algorithm>

ContactView::ContactView(const DeviceList &list, QWidget *parent)
    : QTableView(parent)
    , m_model(new ContactModel(list, this))
    , m_filter(new ContactFilter(*m_model, this))
    , m_delegate(new ContactDelegate(m_pictures, this))
    , m_hover(new CellHover(*this, *m_delegate))
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
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, m_hover, &CellHover::update);
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
    const ColumnLayout::Widths widths =
        ColumnLayout::widths(viewport()->width(), ColumnLayout::minimums(font(), deviceCount()));
    for (int column = 0; column < ContactModel::ColumnCount; ++column)
        setColumnWidth(column, widths[static_cast<std::size_t>(column)]);
}

void ContactView::addSearchEdit(SearchEdit *edit)
{
    m_searchEdits.append(edit);
    connect(edit, &SearchEdit::searchTextChanged, this, &ContactView::onSearchTextChanged);
    connect(edit, &SearchEdit::listWanted, this, &ContactView::clearSearchEditFocus);
}

int ContactView::deviceCount() const
{
    return m_model->rowCount();
}

int ContactView::hiddenCount() const
{
    return m_model->rowCount() - m_filter->rowCount();
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

void ContactView::makeCurrent(const QModelIndex &index, bool select)
{
    selectionModel()->setCurrentIndex(index, select ? QItemSelectionModel::ClearAndSelect |
                                                          QItemSelectionModel::Rows
                                                    : QItemSelectionModel::NoUpdate);
}

void ContactView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    if (!m_keepingDevice && current.isValid())
        m_device = m_filter->mapToSource(current);
}

/// Runs `change`, which inserts and removes rows, and keeps the same device current, even if the
/// list was replaced and the device is in another row. While the search hides the device, no other
/// becomes current. If the device is gone, a neighbour becomes current.
void ContactView::keepDevice(const std::function<void()> &change)
{
    const QScopedValueRollback<bool> keeping(m_keepingDevice, true);
    if (currentIndex().isValid())
        m_deviceSelected = selectionState() > 0;
    const DeviceListSnapshot &snapshot = m_model->snapshot();
    const QString mac = m_device.isValid() ? snapshot.infoAt(m_device.row()).mac : QString();

    change();

    const bool isOther = !m_device.isValid() || snapshot.infoAt(m_device.row()).mac != mac;
    const int moved = mac.isEmpty() || !isOther ? -1 : snapshot.rowOfMac(mac);
    if (moved >= 0)
        m_device = m_model->index(moved, ContactModel::Number);
    else if (!m_device.isValid())
        m_device = m_filter->mapToSource(currentIndex());

    const QModelIndex shown = m_filter->mapFromSource(m_device);
    if (!shown.isValid())
        selectionModel()->clear();
    else if (shown.row() != currentIndex().row())
        makeCurrent(shown, m_deviceSelected);
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

/// A keyword may be reported twice; the filter works only once.
void ContactView::applyKeyword(int index, const QString &keyword)
{
    bool changed = false;
    keepDevice([&] {
        changed = keyword.isEmpty()
                      ? m_filter->setKeyword(ContactModel::Number, QString())
                      : m_filter->setKeyword(SearchEdit::columnOf(index), keyword.trimmed());
    });
    if (!changed)
        return;
    executeDelayedItemsLayout();
    if (currentIndex().isValid())
        scrollTo(currentIndex());
    m_hover->update();
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
    const QModelIndex shown = m_filter->mapFromSource(m_model->index(first, ContactModel::Number));
    if (shown.isValid())
        makeCurrent(shown, true);
    scrollTo(currentIndex());
    emit changeContact(first, last);
}

void ContactView::returnToLostPlace()
{
    if (!currentIndex().isValid()) {
        executeDelayedItemsLayout();
        verticalScrollBar()->setValue(m_lostPlace.scrolled);
        makeCurrent(m_filter->mapFromSource(m_model->index(m_lostPlace.row, ContactModel::Number)),
                    true);
    }
    scrollTo(currentIndex());
}

void ContactView::showDevice(const QString &mac)
{
    m_wantedMac = mac;
}

void ContactView::showWantedDevice()
{
    const int row = m_wantedMac.isEmpty() ? -1 : m_model->snapshot().rowOfMac(m_wantedMac);
    if (row < 0)
        return;
    m_wantedMac.clear();
    showGroupContacts(row, row);
}

void ContactView::updateContactModel()
{
    qCDebug(debugLog) << "updateContactModel.";
    const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const int row = currentListRow();
    keepDevice([this] { m_model->refresh(); });
    if (row >= 0 && !m_device.isValid())
        m_lostPlace = {row, scrolled.y()};
    layOutColumns();
    executeDelayedItemsLayout();
    // The change of one device may have given another one its phone.
    viewport()->update();
    // A current row that moves is no reason to scroll to it.
    horizontalScrollBar()->setValue(scrolled.x());
    verticalScrollBar()->setValue(scrolled.y());
    showWantedDevice();
    m_wantedMac.clear();
    m_hover->update();

    if (m_model->rowCount() == 0)
        emit showNobodyPreview();
    emit viewUpdated();
}

void ContactView::changeScrollValue(int value)
{
    m_verticalOffset = value;
    m_hover->update();
}

void ContactView::clearSearchEditFocus()
{
    for (const QPointer<SearchEdit> &edit : qAsConst(m_searchEdits)) {
        if (!edit || !edit->hasFocus())
            continue;
        setFocus(Qt::OtherFocusReason);
        // The keys that follow must act on a row that is visibly selected.
        if (selectionState() == 0)
            selectRow(std::max(currentIndex().row(), 0));
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

void ContactView::setPhonesSeen(const PhonesSeen &seen)
{
    m_model->setPhonesSeen(seen);
}

void ContactView::showToolTip(const QModelIndex &index)
{
    m_hover->showHint(index);
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
    // The first release has already acted, and another device may now be under the pointer. The
    // later presses of a double or triple click on a button must do nothing.
    m_ignoreRelease = m_clicks.goesOn(*event) && ContactModel::isAction(columnAt(event->pos().x()));
    if (m_ignoreRelease) {
        event->accept();
        return;
    }
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
    m_clicks.goesOn(*event);
    if (ContactModel::isAction(columnAt(event->pos().x()))) {
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

/// Paints a frame around the row on which the keyboard acts.
void ContactView::paintFocus(QPainter &painter)
{
    if (!currentIndex().isValid())
        return;
    RowPictures::RowState state;
    state.selected = selectionModel()->isSelected(currentIndex());
    QColor line = m_pictures.textColor(palette(), state);
    line.setAlpha(130);
    const QRectF row = DevicePixels::snapped(
        painter, QRect(columnViewportPosition(0), rowViewportPosition(currentIndex().row()),
                       horizontalHeader()->length(), rowPixels));
    const qreal thickness = DevicePixels::snapped(painter, 1.0);
    QPainterPath frame;
    frame.addRect(row);
    frame.addRect(row.adjusted(thickness, thickness, -thickness, -thickness));
    painter.fillPath(frame, line);
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
