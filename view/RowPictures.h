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

/// Paints the rows of the device list with the pictures in "./resource/", or with palette colours
/// where a picture is missing. Reads each picture once. GUI thread.
class RowPictures
{
public:
    /// The size to which the picture of a selected row is scaled before it fills the row.
    static constexpr QSize selectedRowSize = QSize(277, 42);

    struct RowState
    {
        bool selected = false;
        bool hovered = false;
        bool hasNoPhone = false; ///< no phone gets the settings of the row's device
    };

    /// Loads and scales the picture of a selected row, unless that is done already.
    void prepareSelectedRow();

    /// Paints the part `part` of the background of `row`. A row painted cell by cell looks the same
    /// as one painted at once.
    void paintRow(QPainter &painter, const QRect &row, const QRect &part, const QPalette &palette,
                  RowState state);

    /// Paints the line between this row and the next one, at the lower edge of `row`.
    void paintSeparator(QPainter &painter, const QRect &row, const QPalette &palette);

    /// A text colour that is readable on such a row (contrast of 4.5:1 or more): the palette's own,
    /// or a red for a device without a MAC; black or white where the contrast of those is too low.
    QColor textColor(const QPalette &palette, RowState state);

    /// Contrast ratio of two opaque colours, from 1 to 21, as the WCAG define it.
    static double contrast(const QColor &left, const QColor &right);

private:
    void load();
    const QPixmap &backgroundFor(const QSize &pixels);

    bool m_loaded = false;
    QPixmap m_selectedSource;
    QPixmap m_selectedScaled;
    QPixmap m_backgroundSource;
    std::array<QPixmap, 2> m_backgroundScaled; ///< indexed by height % 2
    QPixmap m_separator;
    QHash<QPair<qint64, int>, QColor> m_textColors; ///< by palette and state
};
