#include "view/RowPictures.h"

#include "widgets/DevicePixels.h"

#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace {

constexpr double readableContrast = 4.5;
constexpr int hoverOpacity = 26; // of 255; visible, but too faint to impair the text
constexpr int maximumSeparatorHeight = 2;

double linear(double channel)
{
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double worstContrast(const QImage &background, const QColor &color)
{
    double worst = 21;
    for (int y = 0; y < background.height(); ++y) {
        for (int x = 0; x < background.width(); ++x)
            worst = std::min(worst, RowPictures::contrast(background.pixelColor(x, y), color));
    }
    return worst;
}

} // namespace

double RowPictures::contrast(const QColor &left, const QColor &right)
{
    const double first = luminance(left) + 0.05;
    const double second = luminance(right) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

void RowPictures::load()
{
    if (m_loaded)
        return;
    m_loaded = true;
    m_selectedSource.load(QStringLiteral("./resource/selected_row.png"));
    m_backgroundSource.load(QStringLiteral("./resource/row_background.jpg"));
    m_separator.load(QStringLiteral("./resource/separator.png"));
}

void RowPictures::prepareSelectedRow()
{
    load();
    if (m_selectedSource.isNull() || m_selectedScaled.width() == selectedRowSize.width())
        return;
    m_selectedScaled =
        m_selectedSource.scaled(selectedRowSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// The background scaled for a whole row, so that a cell only copies its part. At a fractional
/// screen scale, rows have two heights, one pixel apart.
const QPixmap &RowPictures::backgroundFor(const QSize &pixels)
{
    QPixmap &scaled = m_backgroundScaled[static_cast<std::size_t>(pixels.height()) % 2];
    if (scaled.size() != pixels) {
        scaled = m_backgroundSource.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return scaled;
}

void RowPictures::paintRow(QPainter &painter, const QRect &row, const QRect &part,
                           const QPalette &palette, RowState state)
{
    load();
    painter.save();
    const QRectF whole = DevicePixels::snapped(painter, row);
    const QRectF cell = DevicePixels::snapped(painter, part);
    // Each layer below is painted for the whole row: adjacent rectangles would leave seams.
    painter.setClipRect(cell, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);

    if (m_backgroundSource.isNull()) {
        painter.fillRect(whole, palette.color(QPalette::Active, QPalette::Base));
    } else {
        const QRectF pixels = painter.deviceTransform().mapRect(whole);
        painter.drawPixmap(whole, backgroundFor(pixels.size().toSize()), QRectF());
    }

    if (state.selected) {
        prepareSelectedRow();
        if (m_selectedScaled.isNull())
            painter.fillRect(whole, palette.color(QPalette::Active, QPalette::Highlight));
        else
            painter.drawPixmap(whole, m_selectedScaled, QRectF());
    }
    if (state.hovered) {
        QColor tint = palette.color(QPalette::Active, QPalette::Highlight);
        tint.setAlpha(hoverOpacity);
        painter.fillRect(whole, tint);
    }
    painter.restore();
}

void RowPictures::paintSeparator(QPainter &painter, const QRect &row, const QPalette &palette)
{
    load();
    QRectF line = DevicePixels::snapped(painter, row);
    line.setTop(line.bottom() -
                DevicePixels::snapped(
                    painter, qreal(qBound(1, m_separator.height(), maximumSeparatorHeight))));
    if (m_separator.isNull()) {
        QColor color = palette.color(QPalette::Active, QPalette::Text);
        color.setAlpha(40);
        painter.fillRect(line, color);
        return;
    }
    painter.drawPixmap(line, m_separator, QRectF());
}

QColor RowPictures::textColor(const QPalette &palette, RowState state)
{
    const QPair<qint64, int> key(palette.cacheKey(), (state.selected ? 1 : 0) +
                                                         (state.hovered ? 2 : 0) +
                                                         (state.hasNoPhone ? 4 : 0));
    const auto known = m_textColors.constFind(key);
    if (known != m_textColors.constEnd())
        return *known;

    load();
    // The sample is painted like the row, but by a copy, so that the real background stays cached.
    QImage sample(48, 30, QImage::Format_RGB32);
    sample.fill(palette.color(QPalette::Active, QPalette::Base));
    RowPictures painterOfSample(*this);
    QPainter painter(&sample);
    painterOfSample.paintRow(painter, sample.rect(), sample.rect(), palette, state);
    painter.end();

    QVector<QColor> candidates = {palette.color(
        QPalette::Active, state.selected ? QPalette::HighlightedText : QPalette::Text)};
    if (state.hasNoPhone)
        candidates = {QColor(0xB4, 0x23, 0x30), QColor(0x7A, 0x0C, 0x18), QColor(0xFF, 0xB3, 0xB3)};
    candidates += {QColor(Qt::black), QColor(Qt::white)};
    QColor best;
    double bestContrast = 0;
    for (const QColor &candidate : qAsConst(candidates)) {
        const double candidateContrast = worstContrast(sample, candidate);
        if (bestContrast < readableContrast && candidateContrast > bestContrast) {
            best = candidate;
            bestContrast = candidateContrast;
        }
    }
    // A new theme brings new palettes; the entries of old ones are never looked up again.
    if (m_textColors.size() > 64)
        m_textColors.clear();
    m_textColors.insert(key, best);
    return best;
}
