#pragma once

#include <QPoint>

class QMouseEvent;

/// Tells the presses of a double, triple or longer click from the press that begins one.
class ClickSeries
{
public:
    /// To be told of every press, those of double clicks included. True when it follows the one
    /// before as fast and as near as the presses of one click do.
    bool goesOn(const QMouseEvent &press);

private:
    bool m_begun = false;
    unsigned long m_time = 0; ///< of the last press, in milliseconds
    QPoint m_place;           ///< of the last press, on the screen
};
