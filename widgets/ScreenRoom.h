#pragma once

#include <QRect>

class QWidget;

/// Where the content of a window can be with all of the window on screen: the available area of its
/// screen less the frame that a system draws around the window. For a window that is not visible,
/// its parent, if any, determines the screen. In logical pixels, like QWidget::geometry().
QRect screenRoom(const QWidget &window);

/// The size of the window with its frame; with the thickest usual one while it has no frame yet.
QSize sizeWithFrame(const QWidget &window);

/// `place`, moved and, if that is not enough, shrunk so that all of it lies in `room`.
QRect pulledInto(const QRect &room, QRect place);
