#pragma once

#include "widgets/GuidePage.h"

#include <QPointer>
#include <QWidget>

class QVariantAnimation;
class UserGuideWidget;

/// Shows the open page of the user guide and turns from one page to the next: the old page moves
/// out while the new one follows it.
class UserGuideControl : public QWidget
{
    Q_OBJECT

public:
    enum class Direction {
        Back,    ///< the pages move down
        Forward, ///< the pages move up
    };

    explicit UserGuideControl(QWidget *parent = nullptr);

    /// Sets the font size of the pages' texts, in logical pixels.
    void setTextPx(int textPx);
    /// Shows `page` at once.
    void showPage(const GuidePage &page);
    /// Turns to `page`. Ends a turn that is still in progress first.
    void turnTo(const GuidePage &page, Direction direction);
    bool isRunning() const { return !m_animation.isNull(); }

public slots:
    /// Ends a turn at once, with the new page in its place.
    void stopRunning();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void setTurnedPart(qreal part);
    void place();

    UserGuideWidget *m_open;
    UserGuideWidget *m_leaving; ///< hidden except during a turn
    QPointer<QVariantAnimation> m_animation;
    Direction m_direction = Direction::Forward;
    qreal m_turnedPart = 1; ///< how far the open page has come in: 0 to 1
};
