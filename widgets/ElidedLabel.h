#pragma once

#include <QLabel>

/// A line of plain text that is elided where it does not fit, with the whole text as a tool tip.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    /// Shows `text`; if that does not fit, `shorter`, if any. Elides what still does not fit.
    void setFullText(const QString &text, const QString &shorter = {});

    /// The size that the whole text needs.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void elide();

    QString m_text;
    QString m_shorter;
};
