#include "widgets/SlidePage.h"

#include <QEvent>
#include <QKeyEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr int slideMilliseconds = 200;

} // namespace

SlidePage::SlidePage(Edge edge, QWidget *parent)
    : QWidget(parent)
    , m_edge(edge)
    , m_animation(this, "shownPart")
{
    Q_ASSERT(parent);
    // The parent must not show through, with or without a background from a style sheet.
    setAutoFillBackground(true);
    setAttribute(Qt::WA_StyledBackground);
    m_animation.setDuration(slideMilliseconds);
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_animation, &QAbstractAnimation::finished, this, &SlidePage::endSlide);
    parent->installEventFilter(this);
    hide();
}

void SlidePage::slideIn()
{
    if (m_open)
        return;
    m_open = true;
    // Only a page that slides out ignores clicks, as those are not meant.
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
    place();
    raise();
    show();
    QWidget *const focused = window()->focusWidget();
    if (focused && !isAncestorOf(focused))
        m_focusBefore = focused;
    if (QWidget *const input = nextInput(this, true))
        input->setFocus(Qt::OtherFocusReason);
    slideTo(1);
}

void SlidePage::slideOut()
{
    if (!m_open)
        return;
    m_open = false;
    setAttribute(Qt::WA_TransparentForMouseEvents);
    giveFocusBack();
    slideTo(0);
}

void SlidePage::slideTo(qreal part)
{
    m_animation.stop();
    m_animation.setStartValue(m_shownPart);
    m_animation.setEndValue(part);
    m_animation.start();
}

void SlidePage::endSlide()
{
    if (!m_open)
        hide();
}

void SlidePage::setShownPart(qreal part)
{
    if (qFuzzyCompare(1 + m_shownPart, 1 + part))
        return;
    m_shownPart = part;
    place();
    emit shownPartChanged(part);
}

/// Uses the present size of the parent only, so a window may be resized during a slide.
void SlidePage::place()
{
    const QSize room = parentWidget()->size();
    const int wanted = hasHeightForWidth() ? heightForWidth(room.width()) : sizeHint().height();
    const int height = std::max(wanted, minimumSizeHint().height());
    const int hidden = static_cast<int>(std::lround((1 - m_shownPart) * height));
    const int y = m_edge == Edge::Top ? -hidden : room.height() - height + hidden;
    setGeometry(0, y, room.width(), height);
}

QWidget *SlidePage::nextInput(QWidget *from, bool forward) const
{
    const auto step = [forward](const QWidget *widget) {
        return forward ? widget->nextInFocusChain() : widget->previousInFocusChain();
    };
    for (QWidget *next = step(from); next != from; next = step(next)) {
        if (isAncestorOf(next) && next->isVisibleTo(this) && next->isEnabledTo(this) &&
            (next->focusPolicy() & Qt::TabFocus) == Qt::TabFocus)
            return next;
    }
    return nullptr;
}

bool SlidePage::focusNextPrevChild(bool next)
{
    QWidget *const input = focusWidget() ? nextInput(focusWidget(), next) : nullptr;
    if (input)
        input->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return input;
}

void SlidePage::giveFocusBack()
{
    QWidget *const focused = window()->focusWidget();
    // The user may have moved the focus meanwhile.
    if (focused && isAncestorOf(focused)) {
        if (m_focusBefore)
            m_focusBefore->setFocus(Qt::OtherFocusReason);
        else
            focused->clearFocus();
    }
    m_focusBefore.clear();
}

bool SlidePage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

bool SlidePage::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    // A change of texts or fonts may change the height.
    if (event->type() == QEvent::LayoutRequest)
        place();
    return handled;
}

void SlidePage::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && m_open)
        slideOut();
    else
        QWidget::keyPressEvent(event);
}
