#pragma once

#include <QLabel>

/// A line of plain text that shows as much as there is room for, and all of it as a tool tip.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    /// Shows `text`; where it has no room `shorter`, if any, before something is left out.
    void setFullText(const QString &text, const QString &shorter = {});

    /// For all of the text.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void elide();

    QString m_text;
    QString m_shorter;
};
