#pragma once

#include <QPointer>
#include <QPropertyAnimation>
#include <QWidget>

/// A page that slides in over its parent from one of its edges, and out again. It lies over what
/// the parent shows, stays out of its layout, and follows its width. Hidden at first. A child of
/// its parent, which must not be null.
class SlidePage : public QWidget
{
    Q_OBJECT
    /// How much of the page has come in: 0 to 1.
    Q_PROPERTY(qreal shownPart READ shownPart WRITE setShownPart NOTIFY shownPartChanged)

public:
    enum class Edge { Top, Bottom };

    SlidePage(Edge edge, QWidget *parent);

    /// Comes in and takes the focus to its first input. Turns back while it slides out; does
    /// nothing while open.
    void slideIn();
    /// Goes out, then hides. The focus returns to where it was before. Does nothing unless open.
    void slideOut();
    /// True from slideIn() to slideOut(), whatever has yet to slide.
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
    /// Tab stays on the page: what lies under it would have the focus unseen.
    bool focusNextPrevChild(bool next) override;

private:
    void place();
    void slideTo(qreal part);
    void endSlide();
    /// The input after `from`, or before it, on this page; from the last on to the first.
    QWidget *nextInput(QWidget *from, bool forward) const;
    void giveFocusBack();

    const Edge m_edge;
    QPropertyAnimation m_animation;
    QPointer<QWidget> m_focusBefore;
    qreal m_shownPart = 0;
    bool m_open = false;
};
