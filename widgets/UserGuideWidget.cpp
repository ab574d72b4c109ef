#include "widgets/UserGuideWidget.h"

#include "widgets/DevicePixels.h"

#include <QApplication>
#include <QPainter>
#include <QTextLayout>
#include <QtMath>

namespace {

constexpr int margin = 32;
constexpr qreal titleShare = 26.0 / 18; ///< title size relative to text size
constexpr int ruleWidth = 48;
constexpr int ruleHeight = 3;
constexpr int ruleGap = 16; ///< above and below the rule between title and text
/// Line heights relative to text size.
constexpr qreal titleLine = 32.0 / 18;
constexpr qreal textLine = 26.0 / 18;

const QString fontName = QStringLiteral("Times");

constexpr QRgb columnColor = 0xff22272e;
constexpr QRgb titleColor = 0xff8ee0ff;
constexpr QRgb textColor = 0xffe5e5e5;
constexpr QRgb frameColor = 0xff3d4654;

QFont pageFont(int pixels, QFont::Weight weight)
{
    QFont font(fontName);
    // The interface font supplies the missing characters, such as all Chinese ones.
    font.setFamilies(QStringList(fontName) + QApplication::font().families());
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

/// Breaks the text of `layout` into lines that fit the column; returns their total height.
qreal layOut(QTextLayout &layout, qreal lineHeight)
{
    const qreal width = UserGuideWidget::columnWidth - 2 * margin;
    qreal y = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, y));
        y += lineHeight;
    }
    layout.endLayout();
    return y;
}

/// Lays out title, rule and text below one another, and draws them if there is a painter. Returns
/// the height that they take.
int composeText(const GuidePage &page, int textPx, QPainter *painter)
{
    QTextLayout title(page.title, pageFont(qRound(textPx * titleShare), QFont::Bold));
    QTextLayout text(page.text, pageFont(textPx, QFont::Normal));
    const qreal ruleTop = margin + layOut(title, qRound(textPx * titleLine)) + ruleGap;
    const qreal textTop = ruleTop + ruleHeight + ruleGap;
    const qreal bottom = textTop + layOut(text, qRound(textPx * textLine));
    if (painter) {
        painter->setPen(QColor(titleColor));
        title.draw(painter, QPointF(margin, margin));
        painter->fillRect(QRectF(margin, ruleTop, ruleWidth, ruleHeight), QColor(titleColor));
        painter->setPen(QColor(textColor));
        text.draw(painter, QPointF(margin, textTop));
    }
    return qCeil(bottom) + margin / 2;
}

} // namespace

UserGuideWidget::UserGuideWidget(QWidget *parent)
    : QWidget(parent)
{
}

void UserGuideWidget::setPage(const GuidePage &page)
{
    m_page = page;
    m_picture = page.picture.isEmpty() ? QPixmap() : QPixmap(page.picture);
    m_scaled = QPixmap();
    setAccessibleName(page.title);
    setAccessibleDescription(page.text);
    update();
}

void UserGuideWidget::setTextPx(int textPx)
{
    m_textPx = textPx;
    update();
}

int UserGuideWidget::textHeight(const GuidePage &page, int textPx)
{
    return composeText(page, textPx, nullptr);
}

/// Never enlarged beyond the picture's own pixels, which would only blur it.
QRect UserGuideWidget::pictureRect() const
{
    const QRect room = rect().adjusted(columnWidth + margin, margin, -margin, -margin);
    QSize size = m_picture.size() / devicePixelRatioF();
    if (size.width() > room.width() || size.height() > room.height())
        size.scale(room.size(), Qt::KeepAspectRatio);
    QRect picture(QPoint(), size);
    picture.moveCenter(room.center());
    return picture;
}

void UserGuideWidget::scalePicture(const QSize &pixels)
{
    if (m_scaled.size() != pixels)
        m_scaled = m_picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void UserGuideWidget::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(0, 0, columnWidth, height(), QColor(columnColor));
    composeText(m_page, m_textPx, &painter);
    if (m_picture.isNull() || pictureRect().isEmpty())
        return;
    const QRect place = pictureRect();
    const QRectF picture = DevicePixels::snapped(painter, place);
    painter.fillRect(DevicePixels::snapped(painter, place.adjusted(-1, -1, 1, 1)),
                     QColor(frameColor));
    scalePicture(painter.deviceTransform().mapRect(picture).size().toSize());
    painter.drawPixmap(picture, m_scaled, QRectF());
}
