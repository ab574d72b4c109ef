#pragma once

#include <QPainter>
#include <QRectF>

/// Painting at fractional screen scales: an edge inside a pixel of the screen is blurred or leaves
/// a seam.
namespace DevicePixels {

/// `rect`, in the painter's coordinates, with each edge moved to the nearest pixel edge of the
/// device. Adjacent rectangles stay adjacent. The painter must neither rotate nor shear.
inline QRectF snapped(const QPainter &painter, const QRectF &rect)
{
    const QTransform &toDevice = painter.deviceTransform();
    const QRectF exact = toDevice.mapRect(rect);
    const QPointF topLeft(qRound(exact.left()), qRound(exact.top()));
    const QPointF bottomRight(qRound(exact.right()), qRound(exact.bottom()));
    return toDevice.inverted().mapRect(QRectF(topLeft, bottomRight));
}

/// `thickness` rounded to whole pixels of the device, at least one, so that all lines look alike.
inline qreal snapped(const QPainter &painter, qreal thickness)
{
    const qreal scale = painter.deviceTransform().m22();
    return qMax(1, qRound(thickness * scale)) / scale;
}

} // namespace DevicePixels
