#pragma once

#include <QScrollArea>

/// A scroll area with slim scroll bars, without a frame or a background of its own.
class ScrollArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollArea(QWidget *parent = nullptr);
};
