#pragma once

class QWidget;

/// Makes the window open where it was last closed in this run, as far as the screen allows, instead
/// of over the middle of its parent. Windows with the same object name share the position, so one
/// that is created anew each time keeps it too. Set name and size before the call. GUI thread.
void openWhereClosed(QWidget &window);
