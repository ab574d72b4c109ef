#pragma once

#include <QLabel>
#include <QPointer>
#include <QTimer>

#include <functional>

/// A line of text that appears beside a widget and disappears by itself. It takes neither focus nor
/// clicks, so the user goes on typing.
class ToolTipWidget : public QLabel
{
    Q_OBJECT

public:
    /// Returns the position on the screen of the top left corner of a tip of this size.
    using Place = std::function<QPoint(const QSize &)>;

    explicit ToolTipWidget(QWidget *parent = nullptr);

    /// Shows `text` below `anchor` (above, if there is no room) for `milliseconds`, or until the
    /// anchor is hidden or its window moves. Replaces the message shown before. Screen readers
    /// announce it.
    void showMessage(const QString &text, QWidget *anchor, int milliseconds = 2500);
    /// The same at a place of the caller's choice, in lines of at most `widest` pixels, and not
    /// announced by screen readers.
    void showHint(const QString &text, QWidget *anchor, int widest, const Place &place,
                  int milliseconds);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watch(QWidget *anchor);
    QPoint placeAt(const QWidget &anchor) const;

    QTimer m_timer;
    QPointer<QWidget> m_anchor;
    QPointer<QWidget> m_window; ///< the anchor's
};
