#pragma once

#include <QLabel>

struct BatchOutlook;

/// Describes the batch of devices that would be created, and what is odd about it. Has a fixed
/// height.
class BatchPreview : public QLabel
{
    Q_OBJECT

public:
    explicit BatchPreview(QWidget *parent);

    void showOutlook(const BatchOutlook &outlook);

    /// The text that showOutlook() shows.
    static QString textOf(const BatchOutlook &outlook);
};
