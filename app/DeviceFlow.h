#pragma once

#include "model/ContactInfo.h"
#include "storage/ListJob.h"

#include <QObject>

class ContactDialog;
class ContactsDialog;
class ContactView;
class DataMgr;

/// Creates, changes and deletes devices. Owns the dialog for one device and the one for a batch,
/// each created once and reused; the record that is edited; and the boxes that ask before devices
/// are deleted. GUI thread.
class DeviceFlow : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of its boxes. `dataMgr`, and `view`, which shows
    /// the list, must outlive this object.
    DeviceFlow(DataMgr &dataMgr, ContactView &view, QWidget &window);

    /// The window connects the signals of the dialogs.
    const ContactDialog &contactDialog() const { return *m_contactDialog; }
    const ContactsDialog &contactsDialog() const { return *m_contactsDialog; }

    /// Shows the dialog for a new device.
    void openNew();
    /// Shows the dialog for a batch of new devices.
    void openBatch();
    /// Shows the dialog with the device of this row; ignores a row out of range.
    void openEdit(int row);
    /// Adds a device and shows it in the list.
    void add(const ContactInfo &contact);
    /// Adds these devices and shows the first of them.
    void addBatch(const QList<ContactInfo> &contacts);
    /// Replaces the device with which the dialog was opened by the edited one.
    void update(const ContactInfo &contact);
    /// Shows the dialog again with its input, after a job of this kind left the list unchanged.
    /// Does nothing if another dialog was opened meanwhile.
    void bringBack(ListJob::Kind kind);

    /// Deletes the device of this row without a question.
    void deleteRow(int row);
    /// Deletes the device of the view's current row without a question.
    void deleteCurrent();
    /// Deletes all devices after a question.
    void deleteAll();
    /// Sets the busy flag of the data manager; clears it if devices are selected.
    void markBusyUnlessSelected();

private:
    /// The input that the dialogs hold.
    enum class Typed {
        HandedOver, ///< the input handed over last, also after the dialog has closed
        Since       ///< the input of a dialog opened after the hand-over
    };

    void createDialogs();
    void askAndDeleteCurrent();

    DataMgr &m_dataMgr;
    ContactView &m_view;
    QWidget &m_window;
    ContactDialog *m_contactDialog;   ///< belongs to the window
    ContactsDialog *m_contactsDialog; ///< belongs to the window
    /// The record being edited: a copy, as the list may change while the dialog is open.
    ContactInfo m_editedContact;
    QString m_editedMac; ///< as it was when the dialog was opened
    Typed m_typed = Typed::HandedOver;
};
