#include "widgets/ScrollArea.h"

#include "widgets/EffectScrollBar.h"

ScrollArea::ScrollArea(QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setVerticalScrollBar(new EffectScrollBar(Qt::Vertical));
    setHorizontalScrollBar(new EffectScrollBar(Qt::Horizontal));
}
