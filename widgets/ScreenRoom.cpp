#include "widgets/ScreenRoom.h"

#include <QMargins>
#include <QScreen>
#include <QWidget>

namespace {

/// The frame is not known before the window is shown. No usual one takes more than this.
constexpr QMargins thickestFrame(8, 40, 8, 8);

} // namespace

QRect screenRoom(const QWidget &window)
{
    const QWidget *const parent = window.parentWidget();
    const QWidget &placed = window.isVisible() || !parent ? window : *parent;
    return placed.screen()->availableGeometry().marginsRemoved(thickestFrame);
}
