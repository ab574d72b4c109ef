#include "storage/ListSaver.h"

#include "storage/DBOperator.h"
#include "storage/DatabaseLayer.h"
#include "storage/ScopedTransaction.h"
#include "widgets/Modal.h"

#include <QCoreApplication>
#include <QScopedValueRollback>

#include <limits>
#include <utility>

namespace {

constexpr quint64 neverSaved = std::numeric_limits<quint64>::max();

} // namespace

ListSaver::ListSaver(const DeviceList &devices, DBOperator &dbOperator, const QString &directory,
                     std::function<void()> breathe)
    : m_devices(devices)
    , m_dbOperator(dbOperator)
    , m_backup(directory)
    , m_breathe(std::move(breathe))
    , m_savedVersion(neverSaved)
{
}

bool ListSaver::open()
{
    DatabaseLayer *const store = m_dbOperator.database();
    const bool opened = store->openDatabase();
    const int stored = opened ? store->countContacts() : -1;
    m_usable = stored >= 0;
    if (!m_usable)
        return failed(store->lastErrorText());
    m_storedRowsKnown = stored == 0;
    m_savedVersion = stored == 0 && m_devices.size() == 0 ? m_devices.version() : neverSaved;
    return true;
}

void ListSaver::close()
{
    m_dbOperator.database()->closeDatabase();
    m_usable = false;
}

bool ListSaver::load(QList<ContactInfo> &contacts, const ContactsRead &onTheWay)
{
    if (!m_usable)
        return false;
    contacts = m_dbOperator.load(onTheWay);
    const QString error = m_dbOperator.database()->lastErrorText();
    if (error.isEmpty())
        return true;
    m_usable = false;
    return failed(error);
}

void ListSaver::markLoaded(const QList<ContactInfo> &contacts)
{
    // Rows that read back as other records, or under other numbers, are not yet the list.
    bool same = contacts.size() == m_dbOperator.database()->countContacts();
    for (int row = 0; same && row < contacts.size(); ++row)
        same = contacts.at(row).id == row + 1;
    m_storedRowsKnown = true;
    m_savedVersion = same ? m_devices.version() : neverSaved;
}

bool ListSaver::isSaved() const
{
    return m_savedVersion == m_devices.version() || m_devices.version() == 0;
}

bool ListSaver::save(Ask ask)
{
    if (m_savedVersion == m_devices.version())
        return true;
    if (m_saving)
        return false; // reached while a question of the save below is open
    const QScopedValueRollback<bool> saving(m_saving, true);
    if (!m_usable || (!m_storedRowsKnown && !keepStoredRows(ask)))
        return false;
    // Taken only now: the list may have changed while a question was open.
    const DeviceListSnapshot list = m_devices.snapshot();
    if (!writeList(list))
        return failed(m_dbOperator.database()->lastErrorText());
    m_savedVersion = list.version();
    m_storedRowsKnown = true;
    return true;
}

/// Clearing first settles that rows of earlier saves bear the same ids: the list is the authority.
bool ListSaver::writeList(const DeviceListSnapshot &list)
{
    DatabaseLayer *const store = m_dbOperator.database();
    ScopedTransaction transaction(*store);
    const bool written = transaction.isOpen() && store->deleteAll() &&
                         m_dbOperator.save(list, m_breathe) && store->mergeNewRecords();
    if (m_breathe)
        m_breathe();
    return written && transaction.commit();
}

/// Before the first save of a run that never loaded them, the stored rows are about to go.
bool ListSaver::keepStoredRows(Ask ask)
{
    QList<ContactInfo> stored;
    return load(stored) && (stored.isEmpty() || backUp(stored, ask)) && m_usable;
}

bool ListSaver::backUp(const QList<ContactInfo> &contacts, Ask ask)
{
    if (m_backup.write(contacts))
        return true;
    failed(m_backup.errorText());
    return ask == Ask::Allowed && goOnWithoutBackup();
}

bool ListSaver::goOnWithoutBackup() const
{
    const QString text = QCoreApplication::translate(
                             "ListSaver", "The backup of the device list can not be written: %1. "
                                          "Do you want to go on without a backup?")
                             .arg(m_lastErrorText);
    return Modal::question(nullptr, QCoreApplication::translate("ListSaver", "Backup Error"),
                           text) == Modal::Answer::Yes;
}

bool ListSaver::backUpAll(Ask ask)
{
    if (m_devices.size() > 0 && !backUp(m_devices.snapshot().contacts(), ask))
        return false;
    if (!m_usable || m_storedRowsKnown)
        return true;
    m_storedRowsKnown = keepStoredRows(ask);
    return m_storedRowsKnown;
}

bool ListSaver::putAside()
{
    close();
    if (m_backup.putAside(m_dbOperator.database()->filePath()))
        return true;
    failed(m_backup.errorText());
    return goOnWithoutBackup();
}

bool ListSaver::failed(const QString &reason)
{
    m_lastErrorText = reason;
    return false;
}
