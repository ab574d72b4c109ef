#pragma once

#include <QPainter>
#include <QRectF>

/// Painting at fractional scales: what would begin or end within a pixel of the screen is blurred
/// there, or leaves a seam.
namespace DevicePixels {

/// `rect` with each edge moved to the nearest edge of the device's pixels, in the painter's
/// coordinates. Neighbours still meet. The painter neither turns nor shears.
inline QRectF snapped(const QPainter &painter, const QRectF &rect)
{
    const QTransform &toDevice = painter.deviceTransform();
    const QRectF exact = toDevice.mapRect(rect);
    const QPointF topLeft(qRound(exact.left()), qRound(exact.top()));
    const QPointF bottomRight(qRound(exact.right()), qRound(exact.bottom()));
    return toDevice.inverted().mapRect(QRectF(topLeft, bottomRight));
}

/// `thickness` as whole pixels of the device, at least one, so that all lines look alike.
inline qreal snapped(const QPainter &painter, qreal thickness)
{
    const qreal scale = painter.deviceTransform().m22();
    return qMax(1, qRound(thickness * scale)) / scale;
}

} // namespace DevicePixels
