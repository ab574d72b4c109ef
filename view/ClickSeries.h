#pragma once

#include <QPoint>

class QMouseEvent;

/// Distinguishes the later presses of a double, triple or longer click from the first press.
class ClickSeries
{
public:
    /// Call it for every press, including those of double clicks. Returns true if `press` follows
    /// the previous press fast and near enough to belong to the same series of clicks.
    bool goesOn(const QMouseEvent &press);

private:
    bool m_begun = false;
    unsigned long m_time = 0; ///< of the last press, in milliseconds
    QPoint m_place;           ///< of the last press, on the screen
};
