#pragma once

#include <QPointer>
#include <QPropertyAnimation>
#include <QWidget>

/// A page that slides in over its parent from one edge, and out again. It covers the content of the
/// parent, stays out of the parent's layout, and follows the parent's width. Hidden at first.
/// `parent` must not be null.
class SlidePage : public QWidget
{
    Q_OBJECT
    /// The part of the page that has come in: 0 to 1.
    Q_PROPERTY(qreal shownPart READ shownPart WRITE setShownPart NOTIFY shownPartChanged)

public:
    enum class Edge { Top, Bottom };

    SlidePage(Edge edge, QWidget *parent);

    /// Slides in and focuses its first input. Turns back if it is sliding out; does nothing while
    /// open.
    void slideIn();
    /// Slides out, then hides. The focus returns to where it was before. Does nothing unless open.
    void slideOut();
    /// True from slideIn() to slideOut(), however far the page has slid.
    bool isOpen() const { return m_open; }

    qreal shownPart() const { return m_shownPart; }
    void setShownPart(qreal part);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void shownPartChanged(qreal part);

protected:
    bool event(QEvent *event) override;
    /// Escape slides the page out.
    void keyPressEvent(QKeyEvent *event) override;
    /// Tab stays on the page: a widget under it would have the focus unseen.
    bool focusNextPrevChild(bool next) override;

private:
    void place();
    void slideTo(qreal part);
    void endSlide();
    /// The input of this page after `from`, or before it; the search wraps around at the end.
    QWidget *nextInput(QWidget *from, bool forward) const;
    void giveFocusBack();

    const Edge m_edge;
    QPropertyAnimation m_animation;
    QPointer<QWidget> m_focusBefore;
    qreal m_shownPart = 0;
    bool m_open = false;
};
