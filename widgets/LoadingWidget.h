#pragma once

#include <QPointer>
#include <QWidget>

class QMovie;

/// Covers a window while the program is busy: says so, keeps its wheel turning, and takes every
/// click and key that is meant for the window, shortcuts included. Other windows, such as a
/// question of the work in progress, stay usable.
///
/// The work must let the event loop run, from time to time and once more before the cover is
/// hidden: what the user does while no event is handled arrives later.
class LoadingWidget : public QWidget
{
    Q_OBJECT

public:
    explicit LoadingWidget(QWidget *parent = nullptr);

    /// Covers `window`, which becomes the parent, until hide(). Painted at once where the window
    /// is on screen.
    void showOver(QWidget *window);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    bool isBelow(const QObject *object) const;

    QMovie *m_movie;
    QPointer<QWidget> m_focusBefore;
};
