#include "widgets/ElidedLabel.h"

#include <QTextDocument>

#include <algorithm>

ElidedLabel::ElidedLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::setFullText(const QString &text, const QString &shorter)
{
    m_text = text;
    m_shorter = shorter;
    // Without the element, the tool tip would take the escaped text for plain text.
    setToolTip(Qt::mightBeRichText(text)
                   ? QLatin1String("<span>") + text.toHtmlEscaped() + QLatin1String("</span>")
                   : text);
    setAccessibleName(text);
    updateGeometry();
    elide();
}

QSize ElidedLabel::sizeHint() const
{
    const int height = QLabel::sizeHint().height(); // applies the style sheet first
    return {fontMetrics().horizontalAdvance(m_text), height};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {std::min(sizeHint().width(), fontMetrics().averageCharWidth()),
            QLabel::minimumSizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::elide()
{
    const bool needsShorter =
        !m_shorter.isEmpty() && fontMetrics().horizontalAdvance(m_text) > width();
    setText(fontMetrics().elidedText(needsShorter ? m_shorter : m_text, Qt::ElideRight, width()));
}
