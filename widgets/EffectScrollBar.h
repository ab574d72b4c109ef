#pragma once

#include <QColor>
#include <QScrollBar>
#include <QVariantAnimation>

/// An unobtrusive scroll bar: a slim handle, which grows and darkens gradually while the pointer is
/// on the bar or drags the handle. The bar keeps its size, so nothing moves. The style sheet sets
/// the colours.
class EffectScrollBar : public QScrollBar
{
    Q_OBJECT
    Q_PROPERTY(QColor restColor MEMBER m_restColor)
    Q_PROPERTY(QColor activeColor MEMBER m_activeColor)

public:
    explicit EffectScrollBar(Qt::Orientation orientation, QWidget *parent = nullptr);

    /// From 0 (at rest) to 1 (under the pointer or dragged).
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
