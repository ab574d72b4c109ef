#pragma once

#include <QLabel>

struct BatchOutlook;

/// Says what a batch of devices will be, and what is odd about it. Keeps its height whatever it
/// says.
class BatchPreview : public QLabel
{
    Q_OBJECT

public:
    explicit BatchPreview(QWidget *parent);

    void showOutlook(const BatchOutlook &outlook);

    /// The text for the user.
    static QString textOf(const BatchOutlook &outlook);
};
