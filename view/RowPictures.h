#pragma once

#include <QColor>
#include <QHash>
#include <QPair>
#include <QPixmap>
#include <QSize>

#include <array>

class QPainter;
class QPalette;
class QRect;

/// What the rows of the device list are painted with: the pictures of "./resource/", or palette
/// colours for those that are missing. Each picture is read once. GUI thread.
class RowPictures
{
public:
    /// What the picture of a selected row is scaled to before it is stretched over the row.
    static constexpr QSize selectedRowSize = QSize(277, 42);

    struct RowState
    {
        bool selected = false;
        bool hovered = false;
        bool lacksMac = false; ///< of a device that no phone will get
    };

    /// Makes sure that the picture of a selected row is at hand.
    void prepareSelectedRow();

    /// Paints the part `part` of the background of the row `row`. Painted cell by cell, a row looks
    /// the same as painted at once.
    void paintRow(QPainter &painter, const QRect &row, const QRect &part, const QPalette &palette,
                  RowState state);

    /// Paints the line that parts a row from the next one, at the lower edge of `row`.
    void paintSeparator(QPainter &painter, const QRect &row, const QPalette &palette);

    /// A text colour that reads well on such a row (contrast of 4.5:1 or more): the palette's own,
    /// or a red for a device without a MAC, where that is good enough, else black or white.
    QColor textColor(const QPalette &palette, RowState state);

    /// Contrast of two opaque colours, from 1 to 21, as the WCAG define it.
    static double contrast(const QColor &left, const QColor &right);

private:
    void load();
    const QPixmap &backgroundFor(const QSize &pixels);

    bool m_loaded = false;
    QPixmap m_selectedSource;
    QPixmap m_selectedScaled;
    QPixmap m_backgroundSource;
    std::array<QPixmap, 2> m_backgroundScaled; ///< by whether the height is odd
    QPixmap m_separator;
    QHash<QPair<qint64, int>, QColor> m_textColors; ///< by palette and state
};
