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

/// Reads the stored rows a few at a time. Not to be used once the store was closed.
class ContactReader
{
public:
    ContactReader() = default;
    virtual ~ContactReader() = default;
    ContactReader(const ContactReader &) = delete;
    ContactReader &operator=(const ContactReader &) = delete;

    /// Appends the records of up to `rows` further rows. False at the end and after a failure,
    /// which the store's lastErrorText() tells apart: it is empty at the end.
    virtual bool readOn(int rows, QList<ContactInfo> &contacts) = 0;
    /// Rows seen so far, also those that make no record of their own.
    virtual int rowsSeen() const = 0;
};

/// The store of the device list, as the rest of the program sees it. Belongs to the thread that
/// created it; errors go to the debug log and, as a text for the user, to lastErrorText().
class DatabaseLayer : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Opens the database, creating it with its table on first use.
    virtual bool openDatabase() = 0;
    virtual void closeDatabase() = 0;
    /// Deletes every row; the outcome is not reported.
    /// Part of the interface; nothing here calls it.
    virtual void clearContacts() = 0;
    virtual bool createTable() = 0;
    /// Batch insert, all rows of a table in one transaction.
    virtual bool insertColumns(const ColumnMap &columns) = 0;
    /// Sets fields of one row. Entry 0 of both lists names the key column and its value. Values are
    /// put into the statement as they stand: a text must carry its SQL quotes.
    /// Part of the interface; nothing here calls it.
    virtual bool updateFields(const QString &table, const QStringList &columns,
                              const QStringList &values) = 0;
    /// Deletes every row.
    virtual bool deleteAll() = 0;
    /// Part of the interface; nothing here calls it.
    virtual void setMode(int mode) = 0;
    /// Settles the rows of the last batch insert; they replace older rows with the same MAC.
    virtual bool mergeNewRecords() = 0;
    /// Every row in the table's natural order. A failure returns an empty list and leaves
    /// lastErrorText() set; success clears it.
    virtual QList<ContactInfo> queryContacts() = 0;
    /// Inserts the records as new rows.
    virtual bool insertContacts(const QList<ContactInfo> &contacts) = 0;

    /// What queryContacts() reads, in steps. Other programs cannot write until the reader is gone.
    virtual std::unique_ptr<ContactReader> readContacts() = 0;
    /// deleteAll() in steps, for a long table: deletes some rows, at most so many. Says how many,
    /// or -1.
    virtual int deleteSome(int count) = 0;
    /// Inserts up to `count` devices from the row `first` on, for a long list and an emptied table:
    /// what insertContacts() and mergeNewRecords() come to there. Within a transaction.
    virtual bool insertSettled(const DeviceListSnapshot &list, int first, int count) = 0;

    /// Transactions nest: only the outermost one begins and ends one in the database, and a
    /// roll-back anywhere rolls all of it back. Once one has begun, nobody else can write. Use
    /// ScopedTransaction, or end it in every case.
    virtual bool beginTransaction() = 0;
    /// The same, for reading: nobody else can write, and nothing may be written here.
    virtual bool beginReading() = 0;
    virtual bool commitTransaction() = 0;
    virtual void rollbackTransaction() = 0;

    /// Number of rows, or -1 when the table cannot be read.
    virtual int countContacts() = 0;
    /// A number that changes when somebody else has written to the database; -1 when it cannot be
    /// read.
    virtual int dataVersion() = 0;
    /// Whether an operation waits for another program's lock, for two seconds, or fails at once.
    virtual void setWaitsForLocks(bool wait) = 0;
    /// The file that holds the database.
    virtual QString filePath() const = 0;
    /// Why the last failing operation failed.
    virtual QString lastErrorText() const = 0;
    /// Whether it failed because another program holds the database.
    virtual bool lastErrorIsLock() const = 0;
    /// Whether it failed because another file bears the database's name by now, or none does.
    virtual bool lastErrorIsMove() const = 0;
};
