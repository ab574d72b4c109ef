#pragma once

#include "dialogs/FormDialog.h"
#include "model/ContactInfo.h"

class IpLine;
class QPushButton;

/// Creates one device, or shows and edits one. Made once and reused: loadContact() before each
/// showing. The dialog stores nothing itself; what the user saved is handed over by signal.
class ContactDialog : public FormDialog
{
    Q_OBJECT

public:
    explicit ContactDialog(QWidget *parent = nullptr);

    /// Makes the dialog ready to be shown. Add mode (`isAdd`): the defaults of a new device, `info`
    /// is null. Edit mode: the texts of `*info`, which stays the caller's, must live until the
    /// dialog is closed, and is changed only by a save.
    void loadContact(bool isAdd, ContactInfo *info);

    /// FormDialog::bringBack() in edit mode: what is typed goes on belonging to `*info`, for which
    /// the same holds as in loadContact().
    void bringBackFor(ContactInfo *info);

signals:
    /// Edit mode: the loaded record holds the new texts. The dialog forgets it when this returns.
    void editSaveSucceed(ContactInfo *info);
    /// Add mode: the new record.
    void addSaveSucceed(const ContactInfo &info);

public slots:
    /// Hands the record over and closes, unless the MAC address is incomplete; then says so.
    void doSaveAction() override;
    /// Shows the advanced rows, or hides them, as the text of the button says.
    void showAdvanceBtnClicked();

protected:
    void closeEvent(QCloseEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void createRows();
    void setAdvancedVisible(bool visible);

    QPushButton *m_advanceButton;
    IpLine *m_macLine = nullptr;
    bool m_isAdd = true;
    ContactInfo *m_curInfo = nullptr; ///< the record being edited, not owned
};
