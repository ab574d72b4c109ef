#pragma once

#include <QDialog>

#include <optional>

class QCheckBox;
class QLineEdit;
class QPushButton;

/// Asks on which port the HTTP service is to listen: the default one or one of the user's. Opens
/// where it was last closed. Neither checks nor stores anything; PortSetting connects the buttons.
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
    /// Shows the stored choice. Without this call, the dialog shows the default port.
    void setStored(bool useDefault, const QString &portText);
    /// Whether the dialog shows the stored choice unchanged, so that there is nothing to store.
    bool isAsStored() const;
    /// Enables or disables the input of the custom port.
    void setPortEnabled(bool enabled);
    /// Leads the user back to the port that was refused.
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
