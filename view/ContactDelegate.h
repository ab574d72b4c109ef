#pragma once

#include <QHash>
#include <QStyledItemDelegate>

class RowPictures;

/// Paints the cells of the device list: the row's background, the text, and the pictures of the
/// two action columns.
class ContactDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// Edge of the pictures in the action columns, in logical pixels.
    static constexpr int iconEdge = 20;

    /// `pictures` is not owned and must outlive the delegate.
    explicit ContactDelegate(RowPictures &pictures, QObject *parent = nullptr);

    /// Sets the cell under the pointer, by its row and column in the view; -1 for none.
    void setHovered(int row, int column);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;

private:
    void paintText(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
                   const QColor &color) const;
    void paintAction(QPainter &painter, const QStyleOptionViewItem &option,
                     const QModelIndex &index) const;
    const QPixmap &iconFor(const QPixmap &picture, qreal pixelRatio) const;

    RowPictures &m_pictures;
    int m_hoveredRow = -1;
    int m_hoveredColumn = -1;
    mutable QHash<qint64, QPixmap> m_icons; ///< scaled pictures by the cache key of their source
};
