#pragma once

#include "model/ContactInfo.h"
#include "model/DeviceList.h"

#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantList>

#include <memory>

/// For each table, the list of values of each column in the table's order.
using ColumnMap = QMap<QString, QList<QVariantList>>;

/// Reads the stored rows a few at a time. Must not be used after the store was closed.
class ContactReader
{
public:
    ContactReader() = default;
    virtual ~ContactReader() = default;
    ContactReader(const ContactReader &) = delete;
    ContactReader &operator=(const ContactReader &) = delete;

    /// Appends the records of up to `rows` more rows. False at the end and after a failure: at the
    /// end the store's lastErrorText() is empty.
    virtual bool readOn(int rows, QList<ContactInfo> &contacts) = 0;
    /// The number of rows read so far, including those that make no record of their own.
    virtual int rowsSeen() const = 0;
};

/// The store of the device list, as the rest of the program sees it. Only the thread that created
/// it may use it. Errors go to the debug log and, as a text for the user, to lastErrorText().
class DatabaseLayer : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Opens the database, creating it with its table on first use.
    virtual bool openDatabase() = 0;
    virtual void closeDatabase() = 0;
    /// Deletes every row, without reporting the outcome.
    /// Part of the interface; nothing here calls it.
    virtual void clearContacts() = 0;
    virtual bool createTable() = 0;
    /// Inserts the device table's rows as a batch, in one transaction. Ignores other tables.
    virtual bool insertColumns(const ColumnMap &columns) = 0;
    /// Sets fields of the rows with a key. Entry 0 of the two lists is the key column and its
    /// value. Values are put into the statement as they stand: a text must have its SQL quotes.
    /// Part of the interface; nothing here calls it.
    virtual bool updateFields(const QString &table, const QStringList &columns,
                              const QStringList &values) = 0;
    /// Deletes every row.
    virtual bool deleteAll() = 0;
    /// Part of the interface; nothing here calls it.
    virtual void setMode(int mode) = 0;
    /// Settles the rows inserted since the last call; they replace older rows with the same MAC.
    virtual bool mergeNewRecords() = 0;
    /// Every stored record, in the table's natural order. A failure returns an empty list and sets
    /// lastErrorText(); success clears it.
    virtual QList<ContactInfo> queryContacts() = 0;
    /// Inserts the records as new rows.
    virtual bool insertContacts(const QList<ContactInfo> &contacts) = 0;

    /// queryContacts() in steps. Until the reader ends or is gone, other programs cannot commit.
    virtual std::unique_ptr<ContactReader> readContacts() = 0;
    /// deleteAll() in steps, for a long table: deletes at most `count` rows. Returns how many it
    /// deleted, or -1.
    virtual int deleteSome(int count) = 0;
    /// Inserts up to `count` devices from row `first` on, for a long list and an emptied table. The
    /// result is that of insertContacts() and mergeNewRecords(). Call within a transaction.
    virtual bool insertSettled(const DeviceListSnapshot &list, int first, int count) = 0;

    /// Transactions nest: only the outermost one is one of the database, and a roll-back of an
    /// inner one rolls all of it back. While it is open, no other program can write. Use
    /// ScopedTransaction, or end it in every case.
    virtual bool beginTransaction() = 0;
    /// The same for reading: no other program can commit, and the caller must not write.
    virtual bool beginReading() = 0;
    virtual bool commitTransaction() = 0;
    virtual void rollbackTransaction() = 0;

    /// Number of rows, or -1 when the table cannot be read.
    virtual int countContacts() = 0;
    /// A number that changes when another connection has written to the database; -1 when it cannot
    /// be read.
    virtual int dataVersion() = 0;
    /// Whether an operation waits two seconds for another program's lock, or fails at once.
    virtual void setWaitsForLocks(bool wait) = 0;
    /// The file that holds the database.
    virtual QString filePath() const = 0;
    /// Why the last failing operation failed.
    virtual QString lastErrorText() const = 0;
    /// Whether it failed because another program has locked the database.
    virtual bool lastErrorIsLock() const = 0;
    /// Whether it failed because the database's file was replaced, moved or removed.
    virtual bool lastErrorIsMove() const = 0;
};
