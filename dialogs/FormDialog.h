#pragma once

#include <QDialog>

#include <functional>

class ContactForm;
class IpLine;
class QPushButton;
class QScrollArea;
class ToolTipWidget;

/// What the dialogs for devices share: a form that scrolls, "Save" and "Cancel" below it, and the
/// tip that tells what is wrong with an input.
class FormDialog : public QDialog
{
    Q_OBJECT

public:
    /// Takes back the end of the dialog: to be called while what was saved is being handed over,
    /// and the dialog then stays, or later, and it is shown again. Everything is as it was typed.
    void bringBack();

    /// Opens no higher than the screen: the form scrolls in what is left of it.
    void setVisible(bool visible) override;

public slots:
    /// Hands over what was entered and closes, or says what is wrong with it and stays.
    virtual void doSaveAction() = 0;

protected:
    explicit FormDialog(QWidget *parent);

    ContactForm &form() const { return *m_form; }
    /// Lays form and buttons out once the form has its rows; `extra`, if any, stands left of them,
    /// and `note` between the form and them.
    void createLayout(QPushButton *extra, QWidget *note = nullptr);
    void scrollToTop();
    /// Hands over what was entered by `handOver` and closes, unless bringBack() is called
    /// meanwhile.
    void finish(const std::function<void()> &handOver);
    /// Shows the input and says what is wrong with it; the keyboard is the caller's business.
    void complain(QWidget &input, const QString &text);
    /// Whether all six bytes are there; if not, says so and leads to the first that lacks.
    bool checkMac(IpLine &line);
    /// Whether the text of such an entry has six bytes.
    static bool isWholeMac(const QString &text);

private:
    ContactForm *m_form;
    QScrollArea *m_scrollArea;
    ToolTipWidget *m_toolTip;
    bool m_staysOpen = false;
};
