#pragma once

#include "widgets/GuidePage.h"

#include <QPixmap>
#include <QWidget>

/// Draws one page of the user guide: the title and the text in a dark column on the left, and
/// beside it the picture, as large as fits. Transparent around the picture.
class UserGuideWidget : public QWidget
{
    Q_OBJECT

public:
    /// Width of the column that holds the text.
    static constexpr int columnWidth = 320;
    /// Font sizes of a page's text, in logical pixels. The title is larger in proportion.
    static constexpr int largestTextPx = 18;
    static constexpr int smallestTextPx = 11;

    explicit UserGuideWidget(QWidget *parent = nullptr);

    /// Shows `page`. A picture that cannot be read leaves its place empty.
    void setPage(const GuidePage &page);
    void setTextPx(int textPx);
    /// The height that title and text of `page` take at that font size, margins included.
    static int textHeight(const GuidePage &page, int textPx);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRect pictureRect() const;
    void scalePicture(const QSize &pixels);

    int m_textPx = largestTextPx;
    GuidePage m_page;
    QPixmap m_picture;
    QPixmap m_scaled; ///< m_picture scaled to the size last painted
};
