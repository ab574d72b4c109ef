#pragma once

#include <QObject>

#include <functional>

class QDropEvent;
class QWidget;

/// Lets the user drop a device list, one CSV file and nothing else, on a window. The pointer shows
/// what is accepted. Belongs to the window, whose text boxes still accept text. GUI thread.
class FileDrop : public QObject
{
    Q_OBJECT
public:
    /// `isReady` tells whether the window can take a file at the moment. Create this object after
    /// the window's text boxes.
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
