#pragma once

#include <QDialog>

#include <functional>

class ContactForm;
class IpLine;
class QPushButton;
class QScrollArea;
class ToolTipWidget;

/// The common part of the device dialogs: a form that scrolls, "Save" and "Cancel" below it, and
/// the tip that tells what is wrong with an input.
class FormDialog : public QDialog
{
    Q_OBJECT

public:
    /// Takes back the end of the dialog, with everything as it was typed. Called during the
    /// hand-over, it keeps the dialog open; called later, it shows the dialog again.
    void bringBack();

    /// Limits the height to that of the screen; the form scrolls in the rest.
    void setVisible(bool visible) override;

public slots:
    /// Hands over what was entered and closes, or says what is wrong with it and stays.
    virtual void doSaveAction() = 0;

protected:
    explicit FormDialog(QWidget *parent);

    ContactForm &form() const { return *m_form; }
    /// Lays out form and buttons; call it once the form has its rows. `extra`, if any, stands left
    /// of the buttons, and `note` above them.
    void createLayout(QPushButton *extra, QWidget *note = nullptr);
    void scrollToTop();
    /// Calls `handOver`, then closes unless bringBack() was called meanwhile.
    void finish(const std::function<void()> &handOver);
    /// Scrolls to the input and shows `text` beside it. The caller sets the focus.
    void complain(QWidget &input, const QString &text);
    /// Whether all six bytes are filled in. If not, says so and focuses the first empty byte.
    bool checkMac(IpLine &line);
    /// Whether `text`, from a MAC entry, has six bytes.
    static bool isWholeMac(const QString &text);

private:
    ContactForm *m_form;
    QScrollArea *m_scrollArea;
    ToolTipWidget *m_toolTip;
    bool m_staysOpen = false;
};
