#pragma once

#include <QDialog>

#include <optional>

class QCheckBox;
class QLineEdit;
class QPushButton;

/// Asks on which port the HTTP service is to listen: the default one or one of the user's. It opens
/// where it was closed last. Neither checks nor stores anything; what the buttons do is connected
/// by the window.
class PortDialog : public QDialog
{
    Q_OBJECT

public:
    static constexpr int lowestPort = 5000;
    static constexpr int highestPort = 65535;

    explicit PortDialog(QWidget *parent);

    QCheckBox *useDefaultBox() const { return m_useDefaultBox; }
    QPushButton *okButton() const { return m_okButton; }
    QPushButton *cancelButton() const { return m_cancelButton; }

    bool useDefault() const;
    /// The custom port as it was typed, possibly empty.
    QString portText() const;
    /// Shows a choice that is stored. Without one, the dialog shows the default port.
    void setStored(bool useDefault, const QString &portText);
    /// What is stored stands there as it was shown, so that there is nothing to store.
    bool isAsStored() const;
    /// The custom port can be typed only where the default is not used.
    void setPortEnabled(bool enabled);
    /// Leads the user back to the port that cannot be taken.
    void showWrongPort();

private:
    QCheckBox *m_useDefaultBox;
    QLineEdit *m_portEdit;
    QPushButton *m_okButton;
    QPushButton *m_cancelButton;

    struct Choice
    {
        bool useDefault;
        QString portText;
    };
    std::optional<Choice> m_stored;
};
