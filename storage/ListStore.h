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

/// The stored table, as far as the device list is concerned: whether it holds the list, and what
/// it holds besides. Works in steps of a few milliseconds each. Shows no boxes; reason() says why
/// something failed. GUI thread.
class ListStore
{
public:
    enum class State {
        Closed,
        NotRead, ///< open; the stored rows, if any, were never in the list
        InStep,  ///< the table holds the list as it was at version()
        Behind,  ///< a save failed, for reason(), and the table holds an older list
        Unusable ///< cannot be opened or read, for reason(); left untouched until it is reopened
    };
    enum class Step {
        More,
        Pause, ///< more, but events should be handled first: a step of a long list takes longer
        Done,
        Failed
    };

    /// `dbOperator` must outlive this object. The lock file stands, and backups go, below
    /// `directory`, which ends in "/".
    ListStore(DBOperator &dbOperator, const QString &directory);
    ~ListStore();

    /// Opens the store for a list that has these contents. False, with the store unusable, when
    /// another program has the list open and when the database cannot be opened or read.
    bool open(const DeviceListSnapshot &list);
    void close();

    State state() const { return m_state; }
    /// Open, and readable as far as is known.
    bool isUsable() const;
    QString reason() const { return m_reason; }
    /// Whether a list at this version has something that the table does not hold.
    bool needsSave(quint64 listVersion) const;
    bool isBehind() const { return m_state == State::Behind; }

    /// Appends the stored records to `list`, some at each call; the first one begins. A failure
    /// leaves the store unusable.
    Step readOn(DeviceList &list);
    /// The list, now at this version, holds what readOn() gave.
    void setRead(quint64 listVersion);

    /// Whether the file holds what the list does not and no backup has: rows that were never read,
    /// that cannot be, or that another program has written. Such a file must be backed up before
    /// the next save over it.
    bool hasToKeep();
    /// Writes the backup that hasToKeep() asks for. `Failed` may be followed by a question and
    /// skipKeeping().
    Step keepOn();
    /// The user goes on without that backup.
    void skipKeeping();

    /// Makes the table hold exactly this list, some of it at each call and all in one transaction;
    /// the first call begins. Whatever stops the program meanwhile leaves the old list in the file.
    /// When it turns out that another program has written, nothing is done, and hasToKeep() asks
    /// for a backup.
    Step writeOn(const DeviceListSnapshot &list);
    /// True between two calls of writeOn(): the transaction is open.
    bool isWriting() const { return m_writing != Writing::No; }
    /// Gives up what readOn(), keepOn() or writeOn() have begun; the file is as before.
    void stop();
    /// A save was given up before it could be written, for reason().
    void setBehind() { m_state = State::Behind; }
    /// Whether writing waits for a moment when another program holds the database.
    void setWaitsForLocks(bool wait);
    /// Backs up a list that is about to be dropped, in steps.
    std::unique_ptr<ListBackup> backUp(const DeviceListSnapshot &list);
    /// Why the last backup failed.
    QString backupError() const { return m_backup.errorText(); }
    /// Where the last backup is.
    QString backupPath() const { return m_backup.lastPath(); }
    /// Where the database was copied to since this was asked last; mostly nowhere.
    QString takeCopyPath() { return std::exchange(m_copyPath, QString()); }

    /// Puts an unusable database aside, so that a new one can be opened. True also when it has
    /// turned out to be usable again. False while another program holds it, and when the file
    /// cannot be moved; reason() then says why and isHeld() which of both.
    bool replace(const DeviceListSnapshot &list);
    bool isHeld() const { return m_holder != Holder::Nobody; }
    /// Another program has the list: what lies beside the database is that one's as well.
    bool isElsewhere() const { return m_holder == Holder::Program; }

private:
    /// Who keeps the database from being used, for reason().
    enum class Holder {
        Nobody,
        Writer,  ///< a lock, which goes by
        Program, ///< one that has the list open
    };
    enum class Writing { No, Clearing, Rows, Merge };
    /// What the file holds that the list does not.
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
    quint64 m_version = 0; ///< of the list at which nothing is to be saved
    int m_readVersion = 0; ///< before the reading that is under way
    int m_dataVersion = 0; ///< of the database, as it was read or written last

    Unlisted m_unlisted = Unlisted::Nothing;
    Unlisted m_leftOut = Unlisted::Nothing; ///< by the last reading
    std::unique_ptr<ContactReader> m_reader;
    std::unique_ptr<DeviceList> m_kept; ///< stored devices on their way to a backup
    std::unique_ptr<ListBackup> m_listBackup;

    Writing m_writing = Writing::No;
    int m_writtenRows = 0;
};
