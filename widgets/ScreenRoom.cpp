#include "widgets/ScreenRoom.h"

#include <QMargins>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

/// The frame is not known before the window is shown. No usual frame is thicker than this.
constexpr QMargins thickestFrame(8, 40, 8, 8);

} // namespace

QRect screenRoom(const QWidget &window)
{
    const QWidget *const parent = window.parentWidget();
    const QWidget &placed = window.isVisible() || !parent ? window : *parent;
    return placed.screen()->availableGeometry().marginsRemoved(thickestFrame);
}

QSize sizeWithFrame(const QWidget &window)
{
    const bool hasFrame = window.testAttribute(Qt::WA_WState_Created);
    return hasFrame ? window.frameSize() : window.size().grownBy(thickestFrame);
}

QRect pulledInto(const QRect &room, QRect place)
{
    place.setSize(place.size().boundedTo(room.size()));
    place.moveRight(std::min(place.right(), room.right()));
    place.moveBottom(std::min(place.bottom(), room.bottom()));
    place.moveLeft(std::max(place.left(), room.left()));
    place.moveTop(std::max(place.top(), room.top()));
    return place;
}
