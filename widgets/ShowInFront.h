#pragma once

class QWidget;

/// Shows the window in front of the others and lets it take the focus, also when it is minimized.
/// GUI thread.
void showInFront(QWidget &window);
