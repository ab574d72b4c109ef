#pragma once

#include <QObject>

class PortDialog;
class QWidget;

/// The port of the HTTP service, which reads it at its next start. Owns the dialog while that is on
/// screen, and the boxes over it. GUI thread.
class PortSetting : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of the dialog.
    explicit PortSetting(QWidget &window);

    /// Asks for the port.
    void open();
    /// The dialog's check box was clicked.
    void setUseDefault(bool useDefault);
    /// Stores the port and removes the dialog; tells the user when it is out of range or cannot be
    /// stored.
    void store();
    /// Removes the dialog.
    void close();

private:
    void createDialog();

    QWidget &m_window;
    PortDialog *m_dialog = nullptr; ///< only while it is on screen
};
