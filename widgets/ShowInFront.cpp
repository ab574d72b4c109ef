#include "widgets/ShowInFront.h"

#include <QWidget>

void showInFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}
