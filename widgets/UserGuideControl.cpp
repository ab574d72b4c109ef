#include "widgets/UserGuideControl.h"

#include "widgets/UserGuideWidget.h"

#include <QAccessible>
#include <QVariantAnimation>

#include <cmath>
#include <utility>

namespace {

constexpr int turnMilliseconds = 300;

} // namespace

UserGuideControl::UserGuideControl(QWidget *parent)
    : QWidget(parent)
    , m_open(new UserGuideWidget(this))
    , m_leaving(new UserGuideWidget(this))
{
    m_leaving->hide();
}

void UserGuideControl::setTextPx(int textPx)
{
    m_open->setTextPx(textPx);
    m_leaving->setTextPx(textPx);
}

void UserGuideControl::showPage(const GuidePage &page)
{
    stopRunning();
    m_open->setPage(page);
}

void UserGuideControl::turnTo(const GuidePage &page, Direction direction)
{
    stopRunning();
    std::swap(m_open, m_leaving);
    m_open->setPage(page);
    m_direction = direction;
    setTurnedPart(0);
    m_open->show();

    m_animation = new QVariantAnimation(this);
    m_animation->setDuration(turnMilliseconds);
    m_animation->setStartValue(0.0);
    m_animation->setEndValue(1.0);
    m_animation->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &part) { setTurnedPart(part.toReal()); });
    connect(m_animation, &QAbstractAnimation::finished, this, &UserGuideControl::stopRunning);
    connect(m_animation, &QAbstractAnimation::finished, m_animation, &QObject::deleteLater);
    m_animation->start();

    // The focused widget does not change, so a screen reader would stay silent.
    QAccessibleEvent alert(m_open, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void UserGuideControl::stopRunning()
{
    if (!m_animation)
        return;
    // An animation that is stopped before its end never emits finished().
    m_animation->stop();
    m_animation->deleteLater();
    m_animation.clear();
    m_leaving->hide();
    setTurnedPart(1);
}

void UserGuideControl::setTurnedPart(qreal part)
{
    m_turnedPart = part;
    place();
}

void UserGuideControl::place()
{
    const int step = m_direction == Direction::Forward ? height() : -height();
    const int y = static_cast<int>(std::lround((1 - m_turnedPart) * step));
    m_open->setGeometry(0, y, width(), height());
    m_leaving->setGeometry(0, y - step, width(), height());
}

void UserGuideControl::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    place();
}
