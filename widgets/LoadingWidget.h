#pragma once

#include <QPointer>
#include <QWidget>

class QMovie;

/// Covers a window while the program is busy: shows a message and a turning wheel, and takes every
/// click and key that is meant for the window, shortcuts included. Other windows, such as a
/// question from the work in progress, stay usable.
///
/// The work must return to the event loop from time to time, and once more before the cover is
/// hidden: input that comes while no event is handled arrives later.
class LoadingWidget : public QWidget
{
    Q_OBJECT

public:
    explicit LoadingWidget(QWidget *parent = nullptr);

    /// Covers `window`, which becomes the parent, until hide(). Paints at once if the window is on
    /// screen.
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
