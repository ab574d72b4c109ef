#pragma once

#include "model/ContactInfo.h"
#include "storage/ListJob.h"

#include <QObject>

class ContactDialog;
class ContactsDialog;
class ContactView;
class DataMgr;

/// New, changed and deleted devices. Owns the dialog for one device and the one for a batch, each
/// made once and used again, the record that the first works on, and the boxes that ask before
/// devices are deleted. GUI thread.
class DeviceFlow : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of its boxes. `dataMgr` and `view`, which shows
    /// its list, must outlive this object.
    DeviceFlow(DataMgr &dataMgr, ContactView &view, QWidget &window);

    /// For their signals, which the window connects.
    const ContactDialog &contactDialog() const { return *m_contactDialog; }
    const ContactsDialog &contactsDialog() const { return *m_contactsDialog; }

    /// Shows the dialog for a new device.
    void openNew();
    /// Shows the dialog for a batch of new devices.
    void openBatch();
    /// Shows the dialog with the device of this row; a row out of range changes nothing.
    void openEdit(int row);
    /// Adds a device and shows it in the list.
    void add(const ContactInfo &contact);
    /// Adds these devices and shows the first of them.
    void addBatch(const QList<ContactInfo> &contacts);
    /// Puts an edited device in the place of the one that the dialog was opened with.
    void update(const ContactInfo &contact);
    /// Shows the dialog again with what was typed, after a job of this kind left the list as it
    /// was. Does nothing when a dialog was opened since.
    void bringBack(ListJob::Kind kind);

    /// Deletes the device of this row without a question.
    void deleteRow(int row);
    /// The same with the view's current row.
    void deleteCurrent();
    /// Asks before all devices are deleted.
    void deleteAll();
    /// Sets the data manager's busy flag, and clears it when devices are selected.
    void markBusyUnlessSelected();

private:
    /// What the dialogs hold.
    enum class Typed {
        HandedOver, ///< what was handed over last, also after the dialog has closed
        Since       ///< something else: it was opened since
    };

    void createDialogs();
    void askAndDeleteCurrent();

    DataMgr &m_dataMgr;
    ContactView &m_view;
    QWidget &m_window;
    ContactDialog *m_contactDialog;   ///< belongs to the window
    ContactsDialog *m_contactsDialog; ///< belongs to the window
    /// What an edit works on: a copy, as the list may change while the dialog is open.
    ContactInfo m_editedContact;
    QString m_editedMac; ///< as it was when the dialog was opened
    Typed m_typed = Typed::HandedOver;
};
