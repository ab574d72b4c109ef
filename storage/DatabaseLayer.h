#pragma once

#include "model/ContactInfo.h"

#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantList>

#include <functional>

/// For each table, the list of values of each column in the table's order.
using ColumnMap = QMap<QString, QList<QVariantList>>;

/// Gets what was read up to there; must not reach the store.
using ContactsRead = std::function<void(const QList<ContactInfo> &soFar)>;

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
    virtual void clearContacts() = 0;
    virtual bool createTable() = 0;
    /// Batch insert, all rows of a table in one transaction.
    virtual bool insertColumns(const ColumnMap &columns) = 0;
    /// Sets fields of one row. Entry 0 of both lists names the key column and its value. Values are
    /// put into the statement as they stand: a text must carry its SQL quotes.
    virtual bool updateFields(const QString &table, const QStringList &columns,
                              const QStringList &values) = 0;
    /// Deletes every row.
    virtual bool deleteAll() = 0;
    virtual void setMode(int mode) = 0;
    /// Settles the rows of the last batch insert; they replace older rows with the same MAC.
    virtual bool mergeNewRecords() = 0;
    /// Every row in the table's natural order. A failure returns an empty list and leaves
    /// lastErrorText() set; success clears it. `onTheWay`, if given, is called every thousand rows.
    virtual QList<ContactInfo> queryContacts(const ContactsRead &onTheWay = {}) = 0;
    /// Inserts the records as new rows.
    virtual bool insertContacts(const QList<ContactInfo> &contacts) = 0;

    /// Transactions nest: only the outermost one begins and ends one in the database, and a
    /// roll-back anywhere rolls all of it back. Use ScopedTransaction.
    virtual bool beginTransaction() = 0;
    virtual bool commitTransaction() = 0;
    virtual void rollbackTransaction() = 0;

    /// Number of rows, or -1 when the table cannot be read.
    virtual int countContacts() = 0;
    /// The file that holds the database.
    virtual QString filePath() const = 0;
    /// Why the last failing operation failed.
    virtual QString lastErrorText() const = 0;
};
