#pragma once

#include <QLabel>
#include <QPointer>
#include <QTimer>

#include <functional>

/// A line of text that appears beside a widget and goes away by itself. It takes neither the focus
/// nor a click, so the user goes on typing.
class ToolTipWidget : public QLabel
{
    Q_OBJECT

public:
    /// Where the top left corner of a tip of this size comes on the screen.
    using Place = std::function<QPoint(const QSize &)>;

    explicit ToolTipWidget(QWidget *parent = nullptr);

    /// Shows `text` below `anchor` (above, where the screen ends) for `milliseconds`, or until the
    /// anchor is hidden or its window moves. Replaces the message shown before. A screen reader
    /// says it at once.
    void showMessage(const QString &text, QWidget *anchor, int milliseconds = 2500);
    /// The same at a place of the caller's choice, in lines of at most `widest` pixels, and without
    /// a word from a screen reader.
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
