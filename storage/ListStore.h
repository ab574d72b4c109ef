#pragma once

#include "model/DeviceList.h"
#include "storage/DatabaseLayer.h"
#include "storage/DeviceBackup.h"
#include "storage/ListBackup.h"

#include <QLockFile>
#include <QString>

#include <memory>
#include <utility>

class DBOperator;

/// The stored table in relation to the device list: whether it holds the list, and what else it
/// holds. Works in steps of a few milliseconds. Shows no boxes; reason() tells why something
/// failed. GUI thread.
class ListStore
{
public:
    enum class State {
        Closed,
        NotRead, ///< open, with stored rows that were never in the list
        InStep,  ///< the table holds the list as it was at a known version
        Behind,  ///< the list has to be saved; reason() tells why a save failed
        Unusable ///< cannot be opened or read; untouched until it is opened again or replaced
    };
    enum class Step {
        More,
        Pause, ///< more, but handle events first: the next step of a long list takes longer
        Done,
        Failed
    };

    /// `dbOperator` must outlive this object. The lock file and the backups are in `directory`,
    /// which ends in "/".
    ListStore(DBOperator &dbOperator, const QString &directory);
    ~ListStore();

    /// Opens the store for a list with these contents. False, with the store unusable, when another
    /// program has the list open or the database cannot be opened or read.
    bool open(const DeviceListSnapshot &list);
    void close();

    State state() const { return m_state; }
    /// True when the store is open and, as far as is known, readable.
    bool isUsable() const;
    QString reason() const { return m_reason; }
    /// Whether the table has yet to be brought to a list of this version. False when closed.
    bool needsSave(quint64 listVersion) const;
    bool isBehind() const { return m_state == State::Behind; }

    /// Appends some more stored records to `list`; the first call begins the reading. A failure
    /// makes the store unusable.
    Step readOn(DeviceList &list);
    /// Notes that the list, now at this version, holds the records that readOn() read.
    void setRead(quint64 listVersion);

    /// Whether the file holds rows that are neither in the list nor in a backup: rows that were not
    /// read, that make no device, or that another program has written. They must be backed up
    /// before the next save.
    bool hasToKeep();
    /// Writes the backup that hasToKeep() asks for. After `Failed`, the user may be asked, and
    /// skipKeeping() called.
    Step keepOn();
    /// Goes on without that backup.
    void skipKeeping();

    /// Makes the table hold exactly this list, in steps of one transaction; the first call begins
    /// it. If the program is stopped meanwhile, the file keeps the old list. If another program has
    /// written, the transaction does not begin, and hasToKeep() asks for a backup.
    Step writeOn(const DeviceListSnapshot &list);
    /// True between two calls of writeOn(): the transaction is open.
    bool isWriting() const { return m_writing != Writing::No; }
    /// Gives up what readOn(), keepOn() or writeOn() has begun; the file stays as before.
    void stop();
    /// Notes that the list could not be saved, for reason().
    void setBehind() { m_state = State::Behind; }
    /// See DatabaseLayer::setWaitsForLocks(). Does nothing unless the store is usable.
    void setWaitsForLocks(bool wait);
    /// A backup of this list, to be written in steps.
    std::unique_ptr<ListBackup> backUp(const DeviceListSnapshot &list);
    /// Why the last backup failed.
    QString backupError() const { return m_backup.errorText(); }
    /// The path of the last backup.
    QString backupPath() const { return m_backup.lastPath(); }
    /// The path of a database copy made since the last call, or empty.
    QString takeCopyPath() { return std::exchange(m_copyPath, QString()); }

    /// Puts an unusable database aside, so that a new one can be opened. True also when it turns
    /// out to be usable again. False when another program holds it (isHeld() is then true) or its
    /// file cannot be moved; reason() tells why.
    bool replace(const DeviceListSnapshot &list);
    bool isHeld() const { return m_holder != Holder::Nobody; }
    /// Another program has the list open; the files beside the database are that program's too.
    bool isElsewhere() const { return m_holder == Holder::Program; }

private:
    /// Who keeps the database from being used.
    enum class Holder {
        Nobody,
        Writer,  ///< another program's lock on the database, which ends soon
        Program, ///< another program, which has the list open
    };
    enum class Writing { No, Clearing, Rows, Merge };
    /// What the file holds that the list does not: unread devices, or rows of any kind.
    enum class Unlisted { Nothing, Devices, Rows };

    bool lock();
    bool makeUnusable(const QString &reason, Holder holder);
    Step keepingFailed(const QString &reason, Holder holder = Holder::Nobody);
    Holder holder() const;
    bool reopen();
    Step keepDevices();
    Step backUpKept();
    Step keepFile();
    Step begin();
    Step clear();
    Step writeRows(const DeviceListSnapshot &list);
    Step finish(const DeviceListSnapshot &list);
    Step databaseFailed();
    DatabaseLayer &database() const;

    DBOperator &m_dbOperator;
    DeviceBackup m_backup;
    QLockFile m_lock;
    State m_state = State::Closed;
    QString m_reason;
    QString m_copyPath;
    Holder m_holder = Holder::Nobody;
    quint64 m_version = 0; ///< of the list that needs no save
    int m_readVersion = 0; ///< of the database, when the present reading began
    int m_dataVersion = 0; ///< of the database, when its rows were last accounted for

    Unlisted m_unlisted = Unlisted::Nothing;
    Unlisted m_leftOut = Unlisted::Nothing; ///< what the last reading made no device of
    std::unique_ptr<ContactReader> m_reader;
    std::unique_ptr<DeviceList> m_kept; ///< stored devices on their way to a backup
    std::unique_ptr<ListBackup> m_listBackup;

    Writing m_writing = Writing::No;
    int m_writtenRows = 0;
};
