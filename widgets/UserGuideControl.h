#pragma once

#include "widgets/GuidePage.h"

#include <QPointer>
#include <QWidget>

class QVariantAnimation;
class UserGuideWidget;

/// Shows the page of the user guide that is open, and turns from one page to the next: the old one
/// moves out while the new one follows it.
class UserGuideControl : public QWidget
{
    Q_OBJECT

public:
    enum class Direction {
        Back,    ///< the pages move down
        Forward, ///< the pages move up
    };

    explicit UserGuideControl(QWidget *parent = nullptr);

    /// Height of the pages' letters, in logical pixels.
    void setTextPx(int textPx);
    /// Shows `page` at once.
    void showPage(const GuidePage &page);
    /// Turns to `page`. A turn that is still under way is brought to its end first.
    void turnTo(const GuidePage &page, Direction direction);
    bool isRunning() const { return !m_animation.isNull(); }

public slots:
    /// Ends a turn, wherever it is, with the new page in its place.
    void stopRunning();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void setTurnedPart(qreal part);
    void place();

    UserGuideWidget *m_open;
    UserGuideWidget *m_leaving; ///< hidden but while a page is turned
    QPointer<QVariantAnimation> m_animation;
    Direction m_direction = Direction::Forward;
    qreal m_turnedPart = 1; ///< how far the open page has come in, from 0
};
