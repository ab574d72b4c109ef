#include "widgets/ToolTipWidget.h"

#include "widgets/Grid.h"

#include <QAccessible>
#include <QEvent>
#include <QScreen>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int gap = 4; ///< between the anchor and the tip

} // namespace

ToolTipWidget::ToolTipWidget(QWidget *parent)
    : QLabel(parent, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput)
{
    setProperty("class", QStringLiteral("ToolTipWidget"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setTextFormat(Qt::PlainText);
    setPalette(QToolTip::palette());
    setForegroundRole(QPalette::ToolTipText);
    setBackgroundRole(QPalette::ToolTipBase);
    setAutoFillBackground(true);
    setFrameShape(QFrame::Box);
    setMargin(gridPx);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &QWidget::hide);
}

void ToolTipWidget::showMessage(const QString &text, QWidget *anchor, int milliseconds)
{
    showHint(
        text, anchor, anchor->screen()->availableGeometry().width(),
        [=](const QSize &) { return placeAt(*anchor); }, milliseconds);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void ToolTipWidget::showHint(const QString &text, QWidget *anchor, int widest, const Place &place,
                             int milliseconds)
{
    watch(anchor);
    setText(text);
    setAccessibleName(text);
    setWordWrap(false);
    ensurePolished();
    setWordWrap(sizeHint().width() > widest);
    resize(wordWrap() ? QSize(widest, heightForWidth(widest)) : sizeHint());
    // The move comes first: a tip shown under the pointer takes the pointer from the widget there.
    move(place(size()));
    show();
    raise();
    m_timer.start(milliseconds);
}

void ToolTipWidget::watch(QWidget *anchor)
{
    if (m_anchor)
        m_anchor->removeEventFilter(this);
    if (m_window)
        m_window->removeEventFilter(this);
    m_anchor = anchor;
    m_window = anchor->window();
    m_anchor->installEventFilter(this);
    m_window->installEventFilter(this);
}

QPoint ToolTipWidget::placeAt(const QWidget &anchor) const
{
    QPoint position = anchor.mapToGlobal(QPoint(0, anchor.height() + gap));
    const QRect screen = anchor.screen()->availableGeometry();
    if (position.y() + height() > screen.bottom())
        position.setY(anchor.mapToGlobal(QPoint(0, 0)).y() - gap - height());
    position.setX(std::max(screen.left(), std::min(position.x(), screen.right() - width())));
    return position;
}

bool ToolTipWidget::eventFilter(QObject *watched, QEvent *event)
{
    const bool hidden = event->type() == QEvent::Hide;
    const bool windowMoved = watched == m_window && event->type() == QEvent::Move;
    if (hidden || windowMoved)
        hide();
    return QLabel::eventFilter(watched, event);
}
