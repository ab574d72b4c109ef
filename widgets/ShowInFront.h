#pragma once

class QWidget;

/// Shows the window in front of the others and asks for the focus, even if it was minimized. GUI
/// thread.
void showInFront(QWidget &window);
