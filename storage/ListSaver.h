#pragma once

#include "model/DeviceList.h"
#include "storage/DatabaseLayer.h"
#include "storage/DeviceBackup.h"

#include <QString>

#include <functional>

class DBOperator;

/// Keeps the stored table the same as the device list, and what would be dropped from it in a
/// backup. GUI thread.
///
/// An operation that fails leaves the reason in lastErrorText(). Where a backup cannot be written
/// the user may be asked whether to go on without; such a question runs an event loop.
class ListSaver
{
public:
    enum class Ask {
        Allowed,
        Never, ///< nobody is waiting for this: rather fail
    };

    /// `devices` and `dbOperator` must outlive this object. Backups go below `directory`. `breathe`
    /// is called from time to time in a save, with its transaction open: it must not reach the
    /// store.
    ListSaver(const DeviceList &devices, DBOperator &dbOperator, const QString &directory,
              std::function<void()> breathe = {});

    /// Opens the store. False when it cannot be opened or read; it is then left untouched until it
    /// is opened again.
    bool open();
    void close();
    /// True from a successful open() to close(), unless reading the rows failed since.
    bool isUsable() const { return m_usable; }

    /// Reads every stored record into `contacts`. After a failure nothing is written any more.
    /// See DatabaseLayer::queryContacts() for `onTheWay`.
    bool load(QList<ContactInfo> &contacts, const ContactsRead &onTheWay = {});
    /// The list is empty again as if nothing had ever been in it: there is nothing to save.
    void markEmpty() { m_savedVersion = m_devices.version(); }
    /// The list now holds what load() gave.
    void markLoaded(const QList<ContactInfo> &contacts);

    /// True when the table holds the present list, or the list has never held anything.
    bool isSaved() const;
    /// True in the middle of save(), which asks the user about a backup.
    bool isSaving() const { return m_saving; }
    /// Makes the table hold exactly the present list, in one transaction, so that whatever stops
    /// the program leaves the old list in the file or the new one.
    bool save(Ask ask);

    /// True when the devices are safe in a backup, or the user goes on without.
    bool backUp(const QList<ContactInfo> &contacts, Ask ask);
    /// Before the list is emptied: puts it, and stored rows that were never in it, into backups.
    bool backUpAll(Ask ask);
    /// Closes a store that cannot be used and moves its file to the backups. False when that fails
    /// and the user does not go on without.
    bool putAside();
    /// Where the last backup is.
    QString backupPath() const { return m_backup.lastPath(); }

    QString lastErrorText() const { return m_lastErrorText; }

private:
    bool failed(const QString &reason);
    bool goOnWithoutBackup() const;
    bool keepStoredRows(Ask ask);
    bool writeList(const DeviceListSnapshot &list);

    const DeviceList &m_devices;
    DBOperator &m_dbOperator;
    DeviceBackup m_backup;
    std::function<void()> m_breathe;
    QString m_lastErrorText;
    bool m_usable = false;
    bool m_storedRowsKnown = false; ///< what the table holds was in the list at some time
    bool m_saving = false;
    quint64 m_savedVersion; ///< of the list that the table holds
};
