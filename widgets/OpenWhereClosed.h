#pragma once

class QWidget;

/// Opens the window where it was closed last in this run, as far as the screen allows, instead of
/// in the middle of its parent. Windows of one object name share the place, so that one that is
/// made anew each time keeps it too: the name and the size are to be set before. GUI thread.
void openWhereClosed(QWidget &window);
