#include "widgets/ScrollArea.h"

#include "widgets/EffectScrollBar.h"

#include <QAccessibleWidget>

namespace {

/// A screen reader may ask for a scroll bar that has just disappeared. Qt's accessible scroll area
/// then reads past the end of its list; Qt's accessible widget does not.
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
    // Qt installs a factory once, however often this is called.
    QAccessible::installFactory(accessibleFor);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setVerticalScrollBar(new EffectScrollBar(Qt::Vertical));
    setHorizontalScrollBar(new EffectScrollBar(Qt::Horizontal));
}
