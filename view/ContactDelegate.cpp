#include "view/ContactDelegate.h"

#include "view/ColumnLayout.h"
#include "view/ContactModel.h"
#include "view/RowPictures.h"
#include "widgets/DevicePixels.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QPainter>
#include <QTableView>

#include <algorithm>

namespace {

/// The rectangle of the whole row to which a cell belongs.
QRect rowRect(const QStyleOptionViewItem &option)
{
    const auto *table = qobject_cast<const QTableView *>(option.widget);
    if (!table)
        return option.rect;
    return {table->columnViewportPosition(0), option.rect.top(),
            table->horizontalHeader()->length(), option.rect.height()};
}

/// The beginning of `text`, at least as long as can show in `pixels`. Measuring all of a very long
/// text takes longer than painting the list.
QString beginning(const QString &text, int pixels)
{
    constexpr int narrowestOnAverage = 2;
    int length = std::max(pixels / narrowestOnAverage, 0);
    if (text.size() <= length)
        return text;
    if (length > 0 && text.at(length - 1).isHighSurrogate())
        --length;
    return text.left(length) + QChar(0x2026);
}

} // namespace

ContactDelegate::ContactDelegate(RowPictures &pictures, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_pictures(pictures)
{
}

void ContactDelegate::setHovered(int row, int column)
{
    m_hoveredRow = row;
    m_hoveredColumn = column;
}

void ContactDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const
{
    RowPictures::RowState state;
    state.selected = option.state.testFlag(QStyle::State_Selected);
    state.hovered = index.row() == m_hoveredRow;
    state.hasNoPhone = index.data(ContactModel::NoPhoneRole).toBool();
    m_pictures.paintRow(*painter, rowRect(option), option.rect, option.palette, state);
    if (index.column() >= ContactModel::Detail)
        paintAction(*painter, option, index);
    else
        paintText(*painter, option, index, m_pictures.textColor(option.palette, state));
}

void ContactDelegate::paintText(QPainter &painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index, const QColor &color) const
{
    const QRect room = option.rect.adjusted(ColumnLayout::textMargin, 0, -ColumnLayout::textEnd, 0);
    const QString text = option.fontMetrics.elidedText(
        beginning(index.data(Qt::DisplayRole).toString(), room.width()), Qt::ElideRight,
        room.width(), Qt::TextSingleLine);
    painter.save();
    // Stacked accents would reach into other rows.
    painter.setClipRect(option.rect, Qt::IntersectClip);
    painter.setFont(option.font);
    painter.setPen(color);
    painter.drawText(room, index.data(Qt::TextAlignmentRole).toInt() | Qt::TextSingleLine, text);
    painter.restore();
}

void ContactDelegate::paintAction(QPainter &painter, const QStyleOptionViewItem &option,
                                  const QModelIndex &index) const
{
    const auto picture = index.data(Qt::DecorationRole).value<QPixmap>();
    if (picture.isNull())
        return;

    QRect button(0, 0, iconEdge + 8, iconEdge + 6);
    button.moveCenter(option.rect.center());
    if (index.row() == m_hoveredRow && index.column() == m_hoveredColumn) {
        // Red marks the button that deletes.
        QColor tint = index.column() == ContactModel::Delete
                          ? QColor(0xD3, 0x2F, 0x2F)
                          : option.palette.color(QPalette::Active, QPalette::Highlight);
        tint.setAlpha(80);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tint);
        painter.drawRoundedRect(button, 4, 4);
        painter.restore();
    }

    const QPixmap &icon = iconFor(picture, painter.device()->devicePixelRatioF());
    QRectF place(QPointF(), QSizeF(icon.size()) / icon.devicePixelRatio());
    place.moveCenter(QRectF(option.rect).center());
    painter.drawPixmap(DevicePixels::snapped(painter, place).topLeft(), icon);
}

/// The picture scaled for the physical pixels of the screen; cached for each picture.
const QPixmap &ContactDelegate::iconFor(const QPixmap &picture, qreal pixelRatio) const
{
    QPixmap &icon = m_icons[picture.cacheKey()];
    if (icon.isNull() || !qFuzzyCompare(icon.devicePixelRatio(), pixelRatio)) {
        icon = picture.scaled(QSize(iconEdge, iconEdge) * pixelRatio, Qt::KeepAspectRatio,
                              Qt::SmoothTransformation);
        icon.setDevicePixelRatio(pixelRatio);
    }
    return icon;
}

QWidget *ContactDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                       const QModelIndex & /*index*/) const
{
    auto *editor = new QLineEdit(parent);
    editor->setMinimumWidth(0);
    editor->setMaximumWidth(100);
    return editor;
}
