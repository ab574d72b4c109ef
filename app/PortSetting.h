#pragma once

#include <QObject>

class PortDialog;
class QWidget;

/// The port of the HTTP service, which reads it at its next start. Owns the dialog while it is on
/// screen, and the boxes over it. GUI thread.
class PortSetting : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of the dialog.
    explicit PortSetting(QWidget &window);

    /// Asks for the port.
    void open();
    /// Follows a click on the dialog's check box.
    void setUseDefault(bool useDefault);
    /// Stores the port and removes the dialog. If the port is out of range or cannot be stored,
    /// tells the user instead.
    void store();
    /// Removes the dialog.
    void close();

private:
    void createDialog();

    QWidget &m_window;
    PortDialog *m_dialog = nullptr; ///< only while it is on screen
};
