#pragma once

#include "dialogs/FormDialog.h"
#include "model/ContactInfo.h"

class IpLine;
class QPushButton;

/// Creates one device, or shows and edits one. Created once and reused: call loadContact() before
/// each showing. The dialog stores nothing itself; signals hand over what the user saved.
class ContactDialog : public FormDialog
{
    Q_OBJECT

public:
    explicit ContactDialog(QWidget *parent = nullptr);

    /// Prepares the dialog for showing. Add mode (`isAdd`): shows the defaults of a new device;
    /// `info` is null. Edit mode: shows `*info`, which the caller owns and must keep until the
    /// dialog is closed. Only a save changes `*info`.
    void loadContact(bool isAdd, ContactInfo *info);

    /// FormDialog::bringBack() in edit mode: the next save changes `*info`, for which the same
    /// holds as in loadContact().
    void bringBackFor(ContactInfo *info);

signals:
    /// Edit mode: `*info` holds the new texts. The dialog drops the pointer when this returns,
    /// unless it is brought back.
    void editSaveSucceed(ContactInfo *info);
    /// Add mode: the new record.
    void addSaveSucceed(const ContactInfo &info);

public slots:
    /// Hands the record over and closes; if the MAC address is incomplete, says so instead.
    void doSaveAction() override;
    /// Shows or hides the advanced rows, as the text of the button says.
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
