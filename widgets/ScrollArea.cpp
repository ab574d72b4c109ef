#include "widgets/ScrollArea.h"

#include "widgets/EffectScrollBar.h"

#include <QAccessibleWidget>

namespace {

/// A screen reader may ask for the scroll bar that it was told of when the bar has gone. What Qt
/// has for scroll areas then reads past the end of its list; what it has for any widget does not.
QAccessibleInterface *accessibleFor(const QString &className, QObject *object)
{
    if (className != QLatin1String(ScrollArea::staticMetaObject.className()))
        return nullptr;
    return new QAccessibleWidget(qobject_cast<QWidget *>(object), QAccessible::Client);
}

} // namespace

ScrollArea::ScrollArea(QWidget *parent)
    : QScrollArea(parent)
{
    // Qt keeps a factory once, however often it is told of it.
    QAccessible::installFactory(accessibleFor);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setVerticalScrollBar(new EffectScrollBar(Qt::Vertical));
    setHorizontalScrollBar(new EffectScrollBar(Qt::Horizontal));
}
