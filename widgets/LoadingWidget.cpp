#include "widgets/LoadingWidget.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QMovie>
#include <QVBoxLayout>

namespace {

constexpr int gap = 16;
constexpr int wheelPx = 64; ///< the picture has more, for screens of high resolution

const QString coverStyle =
    QStringLiteral("QWidget {background: transparent url(%1); border: none}");
const QString labelStyle = QStringLiteral("QLabel{ background: transparent; font-size: 22px; "
                                          "color: white; font-weight: bold;}");

/// Whether an event comes from mouse, keyboard, finger or pen.
bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        return true;
    default:
        return false;
    }
}

} // namespace

LoadingWidget::LoadingWidget(QWidget *parent)
    : QWidget(parent)
    , m_movie(new QMovie(QStringLiteral("./resource/loading_animation.gif"), QByteArray(), this))
{
    setObjectName(QStringLiteral("loadingWidget"));
    setAttribute(Qt::WA_StyledBackground);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::WaitCursor);
    setStyleSheet(coverStyle.arg(QStringLiteral("./resource/loading.png")));

    auto *const wheel = new QLabel(this);
    wheel->setObjectName(QStringLiteral("loadingMovieLabel"));
    // Keeps the background picture of the cover off this label.
    wheel->setStyleSheet(labelStyle);
    wheel->setAlignment(Qt::AlignCenter);
    connect(m_movie, &QMovie::frameChanged, wheel, [this, wheel] {
        const qreal ratio = devicePixelRatioF();
        QPixmap frame = QPixmap::fromImage(m_movie->currentImage().scaled(
            QSize(wheelPx, wheelPx) * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        frame.setDevicePixelRatio(ratio);
        wheel->setPixmap(frame);
    });
    auto *const text = new QLabel(tr("Operating,please wait."), this);
    text->setObjectName(QStringLiteral("loadingTextLabel"));
    text->setStyleSheet(labelStyle);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    setAccessibleName(text->text());

    auto *const column = new QVBoxLayout(this);
    column->setSpacing(gap);
    column->addStretch();
    column->addWidget(wheel);
    column->addWidget(text);
    column->addStretch();
    hide();
}

void LoadingWidget::showOver(QWidget *window)
{
    if (parentWidget() != window)
        setParent(window);
    setGeometry(window->rect());
    raise();
    show();
    // The work may begin before the event loop paints.
    repaint();
}

void LoadingWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_focusBefore = window()->focusWidget();
    setFocus(Qt::OtherFocusReason);
    qApp->installEventFilter(this);
    m_movie->start();
}

void LoadingWidget::hideEvent(QHideEvent *event)
{
    m_movie->stop();
    qApp->removeEventFilter(this);
    if (m_focusBefore && window()->focusWidget() == this)
        m_focusBefore->setFocus(Qt::OtherFocusReason);
    m_focusBefore.clear();
    QWidget::hideEvent(event);
}

/// Whether `object` is the covered window or lies in it; true for this cover as well.
bool LoadingWidget::isBelow(const QObject *object) const
{
    if (const auto *widget = qobject_cast<const QWidget *>(object))
        return widget->window() == window();
    // Shortcuts reach actions, which are children of the widgets they belong to.
    return object->isWidgetType() || !object->parent() ? false : isBelow(object->parent());
}

bool LoadingWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    if (!isInput(event->type()) || !isBelow(watched))
        return QWidget::eventFilter(watched, event);
    // An accepted event is passed to no parent, and starts no search for a shortcut.
    event->accept();
    return true;
}
