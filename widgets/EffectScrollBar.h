#pragma once

#include <QColor>
#include <QScrollBar>
#include <QVariantAnimation>

/// A scroll bar that keeps out of the way: a slim handle, which grows and darkens softly while the
/// pointer is on the bar or drags the handle. Its place stays the same, so nothing moves. Colours
/// come from the style sheet.
class EffectScrollBar : public QScrollBar
{
    Q_OBJECT
    Q_PROPERTY(QColor restColor MEMBER m_restColor)
    Q_PROPERTY(QColor activeColor MEMBER m_activeColor)

public:
    explicit EffectScrollBar(Qt::Orientation orientation, QWidget *parent = nullptr);

    /// From 0, at rest, to 1, under the pointer.
    qreal strength() const { return m_strength; }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void follow();

    QColor m_restColor;
    QColor m_activeColor;
    QVariantAnimation m_animation;
    qreal m_strength = 0;
};
