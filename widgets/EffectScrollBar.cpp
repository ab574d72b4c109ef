#include "widgets/EffectScrollBar.h"

#include "widgets/DevicePixels.h"

#include <QEvent>
#include <QPainter>
#include <QStyleOptionSlider>

namespace {

constexpr int effectMilliseconds = 150;
constexpr qreal restThickness = 6;
constexpr qreal activeThickness = 8;
constexpr qreal endGap = 2; ///< between the handle and the ends of the bar

qreal between(qreal from, qreal to, qreal part)
{
    return from + (to - from) * part;
}

QColor between(const QColor &from, const QColor &to, qreal part)
{
    return QColor::fromRgbF(between(from.redF(), to.redF(), part),
                            between(from.greenF(), to.greenF(), part),
                            between(from.blueF(), to.blueF(), part));
}

} // namespace

EffectScrollBar::EffectScrollBar(Qt::Orientation orientation, QWidget *parent)
    : QScrollBar(orientation, parent)
    , m_restColor(palette().color(QPalette::Mid))
    , m_activeColor(palette().color(QPalette::Dark))
{
    m_animation.setDuration(effectMilliseconds);
    connect(&m_animation, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_strength = value.toReal();
        update();
    });
    connect(this, &QAbstractSlider::sliderPressed, this, &EffectScrollBar::follow);
    connect(this, &QAbstractSlider::sliderReleased, this, &EffectScrollBar::follow);
}

/// Animates the strength towards the value that the pointer's place calls for.
void EffectScrollBar::follow()
{
    const qreal wanted = underMouse() || isSliderDown() ? 1.0 : 0.0;
    m_animation.stop();
    m_animation.setStartValue(m_strength);
    m_animation.setEndValue(wanted);
    m_animation.start();
}

bool EffectScrollBar::event(QEvent *event)
{
    const bool handled = QScrollBar::event(event);
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave)
        follow();
    return handled;
}

void EffectScrollBar::paintEvent(QPaintEvent * /*event*/)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const bool upright = orientation() == Qt::Vertical;
    QRectF handle =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const qreal thickness = between(restThickness, activeThickness, m_strength);
    const qreal spare = ((upright ? width() : height()) - thickness) / 2;
    if (upright)
        handle = QRectF(spare, handle.top() + endGap, thickness, handle.height() - 2 * endGap);
    else
        handle = QRectF(handle.left() + endGap, spare, handle.width() - 2 * endGap, thickness);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(between(m_restColor, m_activeColor, m_strength));
    painter.drawRoundedRect(DevicePixels::snapped(painter, handle), thickness / 2, thickness / 2);
}
