#pragma once

#include <QScrollArea>

/// A scroll area that looks like what it lies on: no frame, no ground of its own, slim bars.
class ScrollArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollArea(QWidget *parent = nullptr);
};
