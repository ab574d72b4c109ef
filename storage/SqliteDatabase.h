#pragma once

#include "model/ProgramFolder.h"
#include "storage/DatabaseLayer.h"

#include <QSqlDatabase>
#include <QSqlError>
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
    /// Opens an existing database for reading, also while another program has it open. Creates and
    /// changes nothing, and keeps others from committing only while a reader is at work.
    bool openReadOnly();
    void closeDatabase() override;
    void clearContacts() override;
    bool createTable() override;
    bool insertColumns(const ColumnMap &columns) override;
    bool updateFields(const QString &table, const QStringList &columns,
                      const QStringList &values) override;
    bool deleteAll() override;
    void setMode(int mode) override;
    bool mergeNewRecords() override;
    QList<ContactInfo> queryContacts() override;
    bool insertContacts(const QList<ContactInfo> &contacts) override;

    std::unique_ptr<ContactReader> readContacts() override;
    int deleteSome(int count) override;
    bool insertSettled(const DeviceListSnapshot &list, int first, int count) override;
    bool beginTransaction() override;
    bool beginReading() override;
    bool commitTransaction() override;
    void rollbackTransaction() override;
    int countContacts() override;
    int dataVersion() override;
    void setWaitsForLocks(bool wait) override;
    QString filePath() const override;
    QString lastErrorText() const override { return m_lastErrorText; }
    bool lastErrorIsLock() const override;
    bool lastErrorIsMove() const override;

private:
    class Reader;

    QSqlQuery newQuery() const;
    bool begin(const QString &statement);
    bool execute(const QString &statement);
    void noteInsertFailed();
    bool succeeded(const QSqlQuery &query);
    bool noted(const QSqlError &error);
    int number(const QString &statement);

    int m_mode = 0;
    QString m_directory;
    QSqlDatabase m_database;
    QString m_lastErrorText;
    int m_lastErrorCode = 0; ///< SQLite's primary code, or SQLITE_READONLY_DBMOVED
    int m_transactionDepth = 0;
    bool m_rollBack = false; ///< an inner transaction failed, so the outermost must not commit
};
