#pragma once

#include <QObject>
#include <QString>

class QMainWindow;

/// Size and position of the main window: those at the end of the last run, made to fit the screen;
/// at a first start a size that suits the list, in the middle of the screen. GUI thread.
class WindowPlace : public QObject
{
    Q_OBJECT

public:
    /// Places `window`, which becomes the owner. `filePath` is a settings document; one that is
    /// missing or damaged means a first start. Call it before the window is shown.
    WindowPlace(QMainWindow &window, const QString &filePath);

public slots:
    /// Writes the present place to the file, unless it is stored already. If the folder cannot be
    /// written, only the place is lost.
    void save();

private:
    QMainWindow &m_window;
    QString m_filePath;
    QString m_stored; ///< what the file holds
};
