#include "view/ClickSeries.h"

#include <QApplication>
#include <QMouseEvent>

bool ClickSeries::goesOn(const QMouseEvent &press)
{
    const auto interval = static_cast<unsigned long>(QApplication::doubleClickInterval());
    const bool fast = m_begun && press.timestamp() - m_time < interval;
    const bool near =
        (press.globalPos() - m_place).manhattanLength() < QApplication::startDragDistance();
    m_begun = true;
    m_time = press.timestamp();
    m_place = press.globalPos();
    return fast && near;
}
