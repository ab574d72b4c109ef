#pragma once

#include <QLabel>
#include <QPointer>
#include <QTimer>

/// A line of text that appears beside a widget and goes away by itself. It takes neither the focus
/// nor a click, so the user goes on typing.
class ToolTipWidget : public QLabel
{
    Q_OBJECT

public:
    explicit ToolTipWidget(QWidget *parent = nullptr);

    /// Shows `text` below `anchor` (above, where the screen ends) for `milliseconds`, or until the
    /// anchor is hidden or its window moves. Replaces the message shown before.
    void showMessage(const QString &text, QWidget *anchor, int milliseconds = 2500);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watch(QWidget *anchor);
    void placeAt(const QWidget &anchor);

    QTimer m_timer;
    QPointer<QWidget> m_anchor;
    QPointer<QWidget> m_window; ///< the anchor's
};
