#pragma once

#include "RawDatabase.h"
#include "TestDevices.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "tests/User.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <optional>

/// What the tests of the program's data side work with: a folder, a user, and runs of the program.

const QString yes = "Yes"_s;
const QString no = "No"_s;

/// One run of the program's data side over one folder. Every job is over when the call that starts
/// it returns, unless a test sets slices.
struct Run
{
    explicit Run(const QString &folder)
        : dbOperator(folder + QLatin1Char('/'))
        , mgr(dbOperator, folder + QLatin1Char('/'))
        , changes(&mgr, &DataMgr::updateModel)
    {
        mgr.setSlice(-1);
        QObject::connect(&mgr.worker(), &ListWorker::ended, &mgr, [this](const ListJob &job) {
            lastPhase = job.phase();
            lastReason = job.reason();
        });
    }
    /// A run whose store is open, with the devices of these stamps.
    Run(const QString &folder, const char *stamps)
        : Run(folder)
    {
        if (!mgr.openDatabase())
            qFatal("the store can not be opened");
        if (*stamps) {
            mgr.addContacts(stampedDevices(stamps));
            changes.clear();
        }
    }

    /// The stamps of the devices, with a blank between them.
    QString stamps() const
    {
        QStringList stamps;
        for (int row = 0; row < mgr.devices().size(); ++row)
            stamps.append(mgr.devices().at(row).info.mac.section(QLatin1Char('.'), 0, 0));
        return stamps.join(QLatin1Char(' '));
    }
    QList<ContactInfo> contacts() const { return mgr.devices().snapshot().contacts(); }
    void insert(const char *stamp) { mgr.insertContactNode(stampedDevice(QLatin1String(stamp))); }

    /// These start a job and tell whether it was done.
    bool load()
    {
        return did([this] { mgr.recoverPreviousData(); });
    }
    bool import(const QString &path)
    {
        return did([&] { mgr.importFile(path); });
    }
    bool deleteAll()
    {
        return did([this] { mgr.deleteAllContacts(); });
    }
    bool did(const std::function<void()> &job)
    {
        lastPhase = ListJob::Phase::GivenUp; // unless it ends
        job();
        return lastPhase == ListJob::Phase::Done;
    }

    DBOperator dbOperator;
    DataMgr mgr;
    QSignalSpy changes;
    ListJob::Phase lastPhase = ListJob::Phase::Reading; ///< of the job that ended last
    QString lastReason;
};

/// A folder of the program and its user, made anew for each test by begin().
class DataSide
{
protected:
    void begin()
    {
        m_folder.emplace();
        m_user.emplace();
    }

    QString folder() const { return m_folder->path(); }
    QString at(const QString &name) const { return m_folder->filePath(name); }
    QString databasePath() const { return at("phonebook.db"_s); }
    QStringList backups(const QString &pattern = "*"_s) const
    {
        return QDir(at("backup"_s)).entryList({pattern}, QDir::Files, QDir::Name);
    }
    QString backupPath(const QString &name) const { return at("backup/"_s) + name; }
    QByteArray backup(const QString &name) const { return fileContent(backupPath(name)); }
    void blockBackups() const { writeFile(at("backup"_s)); }
    void unblockBackups() const { QFile::remove(at("backup"_s)); }

    /// The devices listed, as "a b"; then how the table differs from them, as "(1 rows for 2
    /// devices)", and what the user was told or asked since the last call, as "[Save Error]".
    QString state(const Run &run)
    {
        QString text = run.stamps();
        const QString difference = RawDatabase(databasePath()).difference(run.contacts());
        if (!difference.isEmpty())
            text += " (%1)"_s.arg(difference);
        if (!m_user->boxes.isEmpty())
            text += " [%1]"_s.arg(m_user->takeTitles().join(", "_s));
        return text;
    }
    /// Stores these devices in a run of its own.
    void store(const QList<ContactInfo> &devices) const
    {
        Run(folder(), "").mgr.addContacts(devices);
        if (!RawDatabase(databasePath()).difference(devices).isEmpty())
            qFatal("the devices can not be stored");
    }

    std::optional<QTemporaryDir> m_folder;
    std::optional<User> m_user;
};

/// `devices` as they are listed, numbered from 1.
inline QList<ContactInfo> numbered(QList<ContactInfo> devices)
{
    for (int row = 0; row < devices.size(); ++row)
        devices[row].id = row + 1;
    return devices;
}

/// A list of devices whose fields need no quoting.
inline QString csvText(const QString &header, const QList<ContactInfo> &devices,
                       const QString &lineEnd = "\n"_s)
{
    QString text = header + lineEnd;
    for (const ContactInfo &device : devices) {
        QStringList row;
        for (const ContactField &field : contactCsvFields())
            row.append(device.*field.member);
        text += row.join(QLatin1Char(',')) + lineEnd;
    }
    return text;
}

/// What a backup of these devices holds.
inline QByteArray backupText(const QList<ContactInfo> &devices)
{
    return csvText(englishCsvHeader(), devices, "\r\n"_s).toUtf8();
}
