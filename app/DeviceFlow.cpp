#include "app/DeviceFlow.h"

#include "dialogs/ContactDialog.h"
#include "dialogs/ContactsDialog.h"
#include "model/DebugLog.h"
#include "net/PrintableText.h"
#include "storage/DataMgr.h"
#include "view/ContactView.h"
#include "widgets/Modal.h"

#include <QShortcut>

DeviceFlow::DeviceFlow(DataMgr &dataMgr, ContactView &view, QWidget &window)
    : QObject(&window)
    , m_dataMgr(dataMgr)
    , m_view(view)
    , m_window(window)
    , m_contactDialog(new ContactDialog(&window))
    , m_contactsDialog(new ContactsDialog(&window))
{
    createDialogs();
    // The Delete key does what the trash can does. The wrong row is more easily deleted by key than
    // by click, so this asks.
    auto *const deleteKey = new QShortcut(QKeySequence::Delete, &m_view);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, this, &DeviceFlow::askAndDeleteCurrent);
}

void DeviceFlow::createDialogs()
{
    m_contactsDialog->setLookup(
        [this](const QString &mac) { return m_dataMgr.devices().rowOfMac(mac) >= 0; });
    connect(&m_dataMgr, &DataMgr::updateModel, m_contactsDialog, &ContactsDialog::lookAhead);
    for (QDialog *const dialog :
         {static_cast<QDialog *>(m_contactDialog), static_cast<QDialog *>(m_contactsDialog)}) {
        dialog->setWindowModality(Qt::WindowModal);
        // When a dialog closes and a box opens at once, a window manager may give the focus to the
        // closing dialog, and then to nobody.
        connect(dialog, &QDialog::finished, &m_window, &QWidget::activateWindow);
    }
}

void DeviceFlow::openNew()
{
    m_contactDialog->setWindowTitle(tr("New Device"));
    m_typed = Typed::Since;
    m_contactDialog->loadContact(true, nullptr);
    m_contactDialog->show();
}

void DeviceFlow::openBatch()
{
    m_contactsDialog->setWindowTitle(tr("New Devices"));
    m_typed = Typed::Since;
    m_contactsDialog->reset();
    m_contactsDialog->show();
}

void DeviceFlow::openEdit(int row)
{
    qCDebug(debugLog) << "showContactViewDetail index =" << row;
    if (row < 0 || row >= m_dataMgr.devices().size())
        return;
    const DeviceNode node = m_dataMgr.devices().at(row);
    m_editedContact = node.info;
    m_editedContact.id = node.number;
    m_editedMac = node.info.mac;
    // A title bar has no mnemonics, and would show both "&".
    m_contactDialog->setWindowTitle(
        tr("Overview && Edit").replace(QLatin1String("&&"), QLatin1String("&")));
    m_typed = Typed::Since;
    m_contactDialog->loadContact(false, &m_editedContact);
    m_contactDialog->show();
}

void DeviceFlow::add(const ContactInfo &contact)
{
    m_typed = Typed::HandedOver;
    m_view.showDevice(contact.mac);
    m_dataMgr.insertContactNode(contact);
}

void DeviceFlow::addBatch(const QList<ContactInfo> &contacts)
{
    m_typed = Typed::HandedOver;
    if (!contacts.isEmpty())
        m_view.showDevice(contacts.constFirst().mac);
    m_dataMgr.addContacts(contacts);
}

void DeviceFlow::update(const ContactInfo &contact)
{
    m_typed = Typed::HandedOver;
    m_view.showDevice(contact.mac);
    m_dataMgr.updateContact(contact, m_editedMac);
}

void DeviceFlow::bringBack(ListJob::Kind kind)
{
    m_view.showDevice({});
    if (m_typed != Typed::HandedOver)
        return;
    if (kind == ListJob::Kind::Insert)
        m_contactDialog->bringBack();
    else if (kind == ListJob::Kind::Add)
        m_contactsDialog->show();
    else if (kind == ListJob::Kind::Edit)
        m_contactDialog->bringBackFor(&m_editedContact);
}

void DeviceFlow::deleteRow(int row)
{
    qCDebug(debugLog) << "deleteOneContact index =" << row;
    m_dataMgr.deleteContactAt(row);
}

void DeviceFlow::deleteCurrent()
{
    m_dataMgr.setBusy(true);
    m_dataMgr.deleteContactAt(m_view.currentListRow());
    m_dataMgr.setBusy(false);
}

void DeviceFlow::askAndDeleteCurrent()
{
    const int row = m_view.currentListRow();
    if (row < 0 || row >= m_dataMgr.devices().size())
        return;
    const QString mac = m_dataMgr.devices().at(row).info.mac;
    if (Modal::question(&m_window, tr("Delete"),
                        tr("Do you want to delete the device %1?").arg(shortPrintableText(mac))) !=
        Modal::Answer::Yes)
        return;
    // A job may have changed the list meanwhile.
    const int current = m_view.currentListRow();
    if (current >= 0 && current < m_dataMgr.devices().size() &&
        m_dataMgr.devices().at(current).info.mac == mac)
        deleteCurrent();
}

void DeviceFlow::deleteAll()
{
    qCDebug(debugLog) << "onDeleteAll.";
    const int hidden = m_view.hiddenCount();
    const QString note = hidden > 0 ? tr("Hidden by the search: %1").arg(hidden) : QString();
    if (Modal::question(&m_window, tr("Delete All Devices"),
                        tr("Do you want to delete all devices?"), note) == Modal::Answer::Yes)
        m_dataMgr.deleteAllContacts();
}

void DeviceFlow::markBusyUnlessSelected()
{
    m_dataMgr.setBusy(true);
    if (m_view.selectionState() != 0)
        m_dataMgr.setBusy(false);
}
