#pragma once

#include "model/ProgramFolder.h"
#include "storage/DatabaseLayer.h"

#include <QSqlDatabase>
#include <QSqlQuery>

/// The device list in "phonebook.db", through Qt's default SQL connection. GUI thread only: a Qt
/// SQL connection must never be used from another thread, and every call asserts that.
class SqliteDatabase : public DatabaseLayer
{
    Q_OBJECT
public:
    /// `directory` holds the database file and ends in "/".
    explicit SqliteDatabase(const QString &directory = programFolder(), QObject *parent = nullptr);
    ~SqliteDatabase() override;

    bool openDatabase() override;
    void closeDatabase() override;
    void clearContacts() override;
    bool createTable() override;
    bool insertColumns(const ColumnMap &columns) override;
    bool updateFields(const QString &table, const QStringList &columns,
                      const QStringList &values) override;
    bool deleteAll() override;
    void setMode(int mode) override;
    bool mergeNewRecords() override;
    QList<ContactInfo> queryContacts(const ContactsRead &onTheWay = {}) override;
    bool insertContacts(const QList<ContactInfo> &contacts) override;

    bool beginTransaction() override;
    bool commitTransaction() override;
    void rollbackTransaction() override;
    int countContacts() override;
    QString filePath() const override;
    QString lastErrorText() const override { return m_lastErrorText; }

private:
    QSqlQuery newQuery() const;
    bool succeeded(const QSqlQuery &query);
    int count(const QString &statement);

    int m_mode = 0;
    QString m_directory;
    QSqlDatabase m_database;
    QString m_lastErrorText;
    /// The values of the batch inserted last. A long list comes in many batches, and values are
    /// quicker set than made.
    ColumnMap m_batch;
    int m_transactionDepth = 0;
    bool m_rollBack = false; ///< an inner transaction failed, so the outermost must not commit
};
