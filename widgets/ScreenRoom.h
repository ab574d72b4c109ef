#pragma once

#include <QRect>

class QWidget;

/// Where the content of a window can be without any of the window being off the screen: the
/// available area of its screen less the frame that a system draws around it. For a window that is
/// not shown yet it is the screen of its parent, else the first. In logical pixels, as
/// QWidget::geometry().
QRect screenRoom(const QWidget &window);

/// The size of the window with its frame, or with the thickest usual one while it has none yet.
QSize sizeWithFrame(const QWidget &window);

/// `place` moved, and made smaller where that is not enough, so that all of it lies in `room`.
QRect pulledInto(const QRect &room, QRect place);
