#include "storage/ListStore.h"

#include "storage/DBOperator.h"
#include "storage/DatabaseFiles.h"
#include "storage/LongList.h"
#include "storage/ScopedTransaction.h"

#include <QCoreApplication>

namespace {

QString lockName()
{
    return databaseName + QLatin1String(".lock");
}

constexpr int rowsReadAtOnce = 200;
constexpr int rowsDeletedAtOnce = 1000;

} // namespace

ListStore::ListStore(DBOperator &dbOperator, const QString &directory)
    : m_dbOperator(dbOperator)
    , m_backup(directory)
    , m_lock(directory + lockName())
{
    // A lock is held as long as its program runs, so its age says nothing. On the same computer, Qt
    // checks whether that program still runs.
    m_lock.setStaleLockTime(0);
}

ListStore::~ListStore()
{
    close();
}

DatabaseLayer &ListStore::database() const
{
    return *m_dbOperator.database();
}

bool ListStore::open(const DeviceListSnapshot &list)
{
    close();
    m_holder = Holder::Nobody;
    if (!lock())
        return false;
    const bool opened = database().openDatabase();
    // Read before the count: a write in between then counts as a later one.
    m_dataVersion = opened ? database().dataVersion() : -1;
    const int stored = opened ? database().countContacts() : -1;
    if (stored < 0 || m_dataVersion < 0)
        return makeUnusable(database().lastErrorText(), holder());
    m_unlisted = stored == 0 ? Unlisted::Nothing : Unlisted::Devices;
    m_state = stored == 0 ? State::InStep : State::NotRead;
    m_version = list.version();
    if (!list.isEmpty())
        m_state = State::Behind;
    return true;
}

/// False when another program has the list open. A folder in which no lock file can be made does
/// not keep the user from the list.
bool ListStore::lock()
{
    if (m_lock.isLocked() || m_lock.tryLock() || m_lock.error() != QLockFile::LockFailedError)
        return true;
    qint64 process = 0;
    QString host;
    QString program;
    // A lock file that names no owner was left by a program that was stopped, as by a power cut,
    // before it wrote the name. The file of a running program cannot be removed.
    if (!m_lock.getLockInfo(&process, &host, &program) && m_lock.removeStaleLockFile() &&
        m_lock.tryLock())
        return true;
    const QString reason = QCoreApplication::translate(
        "ListStore", "the list is in use by the program \"%1\" on the computer "
                     "\"%2\" (process %3). If that program no longer runs, remove "
                     "the file %4");
    return makeUnusable(reason.arg(program, host, QString::number(process), lockName()),
                        Holder::Program);
}

void ListStore::stop()
{
    m_reader.reset();
    m_kept.reset();
    m_listBackup.reset();
    if (isWriting()) {
        m_writing = Writing::No;
        database().rollbackTransaction();
    }
}

void ListStore::close()
{
    stop();
    if (m_state != State::Closed)
        database().closeDatabase();
    m_lock.unlock();
    m_state = State::Closed;
}

bool ListStore::isUsable() const
{
    return m_state != State::Closed && m_state != State::Unusable;
}

bool ListStore::needsSave(quint64 listVersion) const
{
    return m_state != State::Closed && (isBehind() || listVersion != m_version);
}

bool ListStore::makeUnusable(const QString &reason, Holder holder)
{
    m_state = State::Unusable;
    m_reason = reason;
    m_holder = holder;
    return false;
}

/// Leaves the state as it is: neither the list nor the table has changed.
ListStore::Step ListStore::keepingFailed(const QString &reason, Holder holder)
{
    m_reason = reason;
    m_holder = holder;
    return Step::Failed;
}

/// Rolls an open transaction back. `More` when the file that now has the name could be opened.
ListStore::Step ListStore::databaseFailed()
{
    m_reason = database().lastErrorText();
    m_holder = holder();
    const bool isMoved = database().lastErrorIsMove();
    setBehind();
    stop();
    return isMoved && reopen() ? Step::More : Step::Failed;
}

ListStore::Holder ListStore::holder() const
{
    return database().lastErrorIsLock() ? Holder::Writer : Holder::Nobody;
}

/// Opens the file that has the name now. None of its rows was written here.
bool ListStore::reopen()
{
    database().closeDatabase();
    if (!database().openDatabase())
        return makeUnusable(database().lastErrorText(), holder());
    m_dataVersion = database().dataVersion();
    m_unlisted = database().countContacts() == 0 ? Unlisted::Nothing : Unlisted::Rows;
    return true;
}

void ListStore::setWaitsForLocks(bool wait)
{
    if (isUsable())
        database().setWaitsForLocks(wait);
}

ListStore::Step ListStore::readOn(DeviceList &list)
{
    if (!isUsable())
        return Step::Failed;
    if (!m_reader) {
        m_readVersion = database().dataVersion();
        m_reader = database().readContacts();
    }
    QList<ContactInfo> contacts;
    const bool more = m_reader->readOn(rowsReadAtOnce, contacts);
    for (const ContactInfo &contact : qAsConst(contacts))
        list.append(contact);
    if (more)
        return Step::More;
    m_leftOut = m_reader->rowsSeen() == list.size() ? Unlisted::Nothing : Unlisted::Rows;
    m_reader.reset();
    if (!database().lastErrorText().isEmpty()) {
        makeUnusable(database().lastErrorText(), holder());
        return Step::Failed;
    }
    m_dataVersion = m_readVersion;
    return Step::Done;
}

void ListStore::setRead(quint64 listVersion)
{
    m_state = State::InStep;
    m_version = listVersion;
    m_unlisted = m_leftOut;
}

bool ListStore::hasToKeep()
{
    if (!isUsable())
        return false;
    // Known unlisted rows are backed up as the file then holds them, so only a file without any is
    // checked. A locked file can be neither checked nor written.
    if (m_unlisted == Unlisted::Nothing) {
        const int version = database().dataVersion();
        if (version >= 0 && version != m_dataVersion)
            m_unlisted = Unlisted::Rows;
    }
    return m_unlisted != Unlisted::Nothing;
}

ListStore::Step ListStore::keepOn()
{
    return m_unlisted == Unlisted::Devices ? keepDevices() : keepFile();
}

/// Backs the unread devices up, in the form that the import reads.
ListStore::Step ListStore::keepDevices()
{
    if (m_listBackup)
        return backUpKept();
    if (!m_kept)
        m_kept = std::make_unique<DeviceList>();
    const State before = m_state;
    const Step step = readOn(*m_kept);
    if (step == Step::More)
        return step;
    const std::unique_ptr<DeviceList> kept = std::move(m_kept);
    if (step == Step::Failed) {
        if (isHeld())
            m_state = before; // unlike damage, a lock ends
        return step;
    }
    m_listBackup = backUp(kept->snapshot());
    return Step::More;
}

ListStore::Step ListStore::backUpKept()
{
    const ListBackup::Step step = m_listBackup->step();
    if (step == ListBackup::Step::More)
        return Step::More;
    m_listBackup.reset();
    if (step == ListBackup::Step::Failed)
        return keepingFailed(m_backup.errorText());
    m_unlisted = m_leftOut;
    return m_unlisted == Unlisted::Nothing ? Step::Done : Step::More;
}

/// Copies the file as it is: a list of devices could not hold everything in it.
ListStore::Step ListStore::keepFile()
{
    ScopedTransaction reading(database(), ScopedTransaction::For::Reading);
    if (!reading.isOpen())
        return keepingFailed(database().lastErrorText(), holder());
    if (!m_backup.copyDatabase(database().filePath()))
        return keepingFailed(m_backup.errorText());
    m_copyPath = m_backup.lastPath();
    skipKeeping();
    return Step::Done;
}

void ListStore::skipKeeping()
{
    m_unlisted = Unlisted::Nothing;
    m_dataVersion = database().dataVersion();
}

std::unique_ptr<ListBackup> ListStore::backUp(const DeviceListSnapshot &list)
{
    return std::make_unique<ListBackup>(m_backup, list);
}

ListStore::Step ListStore::writeOn(const DeviceListSnapshot &list)
{
    switch (m_writing) {
    case Writing::No:
        return begin();
    case Writing::Clearing:
        return clear();
    case Writing::Rows:
        return writeRows(list);
    case Writing::Merge:
        return finish(list);
    }
    return Step::Failed;
}

ListStore::Step ListStore::begin()
{
    if (!isUsable())
        return Step::Failed;
    if (!database().beginTransaction())
        return databaseFailed();
    // From here on no other program can write.
    if (hasToKeep()) {
        database().rollbackTransaction();
        return Step::More;
    }
    m_writing = Writing::Clearing;
    return Step::More;
}

/// Comes before the insertion: rows of earlier saves have the same ids, and the list prevails.
ListStore::Step ListStore::clear()
{
    const int deleted = database().deleteSome(rowsDeletedAtOnce);
    if (deleted > 0)
        return Step::More;
    if (deleted < 0 || !database().deleteAll())
        return databaseFailed();
    m_writing = Writing::Rows;
    m_writtenRows = 0;
    return Step::More;
}

ListStore::Step ListStore::writeRows(const DeviceListSnapshot &list)
{
    if (m_writtenRows >= list.size()) {
        m_writing = Writing::Merge;
        return isLongList(list.size()) ? Step::Pause : Step::More;
    }
    const int first = m_writtenRows;
    m_writtenRows += DBOperator::rowsAtOnce;
    const bool written = isLongList(list.size())
                             ? database().insertSettled(list, first, DBOperator::rowsAtOnce)
                             : m_dbOperator.saveRows(list, first, DBOperator::rowsAtOnce);
    return written ? Step::More : databaseFailed();
}

ListStore::Step ListStore::finish(const DeviceListSnapshot &list)
{
    // A long list's rows are inserted settled, as a merge of so many takes too long. The table has
    // no other rows that they could replace.
    if (!isLongList(list.size()) && !database().mergeNewRecords())
        return databaseFailed();
    m_writing = Writing::No;
    if (!database().commitTransaction())
        return databaseFailed();
    m_state = State::InStep;
    m_reason.clear();
    m_version = list.version();
    return Step::Done;
}

bool ListStore::replace(const DeviceListSnapshot &list)
{
    if (open(list))
        return true;
    if (isHeld())
        return false;
    const QString path = database().filePath();
    database().closeDatabase();
    return m_backup.putAside(path) || makeUnusable(m_backup.errorText(), Holder::Nobody);
}
