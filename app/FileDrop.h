#pragma once

#include <QObject>

#include <functional>

class QDropEvent;
class QWidget;

/// Lets the user drop a device list file on a window: one CSV file, and nothing else. What is taken
/// shows at the pointer. Belongs to the window; its text boxes go on taking text. GUI thread.
class FileDrop : public QObject
{
    Q_OBJECT
public:
    /// `isReady` says whether the window can use a file at the moment. To be made after the
    /// window's text boxes.
    FileDrop(QWidget &window, std::function<bool()> isReady);

signals:
    void dropped(const QString &path);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QString takenPath(const QDropEvent &event) const;

    QWidget &m_window;
    std::function<bool()> m_isReady;
};
