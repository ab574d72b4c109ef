#include "storage/SqliteDatabase.h"

#include "model/ContactFields.h"
#include "model/DebugLog.h"
#include "model/WholeFile.h"
#include "storage/DatabaseFiles.h"
#include "storage/RowInserter.h"
#include "storage/ScopedTransaction.h"
#include "storage/SqlStatements.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlDriver>
#include <QTextCodec>
#include <QThread>

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace {

const QString contactTable = QStringLiteral("contact1");

/// All texts, the id and the flag.
constexpr int contactTableColumns = static_cast<int>(contactFieldCount) + 2;

constexpr int primaryCode = 0xff;    // mask; the higher bits of an error only add detail
constexpr int rowsReadAtOnce = 1000; // for a reading in one go

// Another program may be saving a long list, which takes seconds; no window waits here.
const QString readingOnly = QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=10000");

struct KnownError
{
    int code; ///< SQLite's primary result code, or SQLITE_READONLY_DBMOVED
    const char *text;
};

/// Errors that a user can act on, to be translated; SQLite's own texts are in English.
constexpr std::array<KnownError, 9> knownErrors = {{
    {SQLITE_BUSY, QT_TRANSLATE_NOOP("SqliteDatabase", "the database is in use by another program")},
    {SQLITE_LOCKED,
     QT_TRANSLATE_NOOP("SqliteDatabase", "the database is in use by another program")},
    {SQLITE_READONLY, QT_TRANSLATE_NOOP("SqliteDatabase", "the database is read-only")},
    {SQLITE_IOERR, QT_TRANSLATE_NOOP("SqliteDatabase", "reading or writing the disk failed")},
    {SQLITE_CORRUPT, QT_TRANSLATE_NOOP("SqliteDatabase", "the database is damaged")},
    {SQLITE_FULL, QT_TRANSLATE_NOOP("SqliteDatabase", "the disk is full")},
    {SQLITE_CANTOPEN, QT_TRANSLATE_NOOP("SqliteDatabase", "the database can not be opened")},
    {SQLITE_NOTADB, QT_TRANSLATE_NOOP("SqliteDatabase", "the file is not a database")},
    {SQLITE_READONLY_DBMOVED,
     QT_TRANSLATE_NOOP("SqliteDatabase", "another file has taken its place")},
}};

/// The database's own text if there is one: Qt's text for the failed call tells a user nothing.
QString reason(const QSqlError &error, int code)
{
    const auto known = std::find_if(knownErrors.begin(), knownErrors.end(),
                                    [code](const KnownError &one) { return one.code == code; });
    if (known != knownErrors.end())
        return SqliteDatabase::tr(known->text);
    return error.databaseText().isEmpty() ? error.text() : error.databaseText();
}

QSqlError notOpen()
{
    return QSqlError(QString(), SqliteDatabase::tr("the database is not open"),
                     QSqlError::ConnectionError);
}

/// The driver's own connection, which must be open. The driver uses the same SQLite library as this
/// program.
sqlite3 *handleOf(const QSqlDatabase &database)
{
    const QVariant handle = database.driver()->handle();
    return *static_cast<sqlite3 *const *>(handle.constData());
}

/// The last error of `database`, in the form in which the driver reports its own.
QSqlError errorOf(sqlite3 *database)
{
    return QSqlError(QString(), QString::fromUtf8(sqlite3_errmsg(database)),
                     QSqlError::StatementError,
                     QString::number(sqlite3_extended_errcode(database)));
}

void useUtf8AsLocaleCodec()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

} // namespace

/// Makes one record at a time: consecutive rows with one id are one record with the values of the
/// last row, and a row without an id makes none.
class SqliteDatabase::Reader : public ContactReader
{
public:
    explicit Reader(SqliteDatabase &database)
        : m_database(database)
        , m_query(database.newQuery())
    {
        m_query.setForwardOnly(true);
        m_query.exec(Sql::selectAll);
    }

    bool readOn(int rows, QList<ContactInfo> &contacts) override
    {
        for (int i = 0; i < rows; ++i) {
            if (!m_query.next())
                return end(contacts);
            readRow(contacts);
        }
        return true;
    }

    int rowsSeen() const override { return m_rowsSeen; }

private:
    void readRow(QList<ContactInfo> &contacts)
    {
        ++m_rowsSeen;
        const int id = m_query.value(0).toInt();
        if (id != m_current.id && m_current.id > 0)
            contacts.append(m_current);
        m_current.id = id;
        int column = 1;
        for (const ContactField &field : contactFields()) {
            // A text equal to the one before stays shared: most columns repeat one value.
            const QString text = m_query.value(column++).toString();
            if (text != m_current.*field.member)
                m_current.*field.member = text;
        }
    }

    bool end(QList<ContactInfo> &contacts)
    {
        if (m_current.id != 0)
            contacts.append(m_current);
        m_current.id = 0;
        m_database.m_lastErrorText.clear();
        if (m_database.succeeded(m_query)) {
            m_query.finish();
            m_database.execute(Sql::freeCache);
        }
        return false;
    }

    SqliteDatabase &m_database;
    QSqlQuery m_query;
    ContactInfo m_current;
    int m_rowsSeen = 0;
};

SqliteDatabase::SqliteDatabase(const QString &directory, QObject *parent)
    : DatabaseLayer(parent)
    , m_directory(directory)
{
}

SqliteDatabase::~SqliteDatabase()
{
    closeDatabase();
}

bool SqliteDatabase::openDatabase()
{
    const QString path = filePath();
    // An empty file is left by an interrupted creation: it never held anything.
    const bool existed = QFileInfo(path).size() > 0;

    closeDatabase();
    // Created here and not by the driver, so that nobody else can ever open it. Whether that fails,
    // the driver tells.
    if (!QFile::exists(path))
        static_cast<void>(
            writeWholeFile(path, QByteArray(), Durability::Replaced, Readers::OwnerOnly));
    // Only the owner may read it. A write protection is intended, so it stays.
    if (QFileInfo(path).isFile())
        QFile::setPermissions(path,
                              QFile::permissions(path) & (QFile::ReadOwner | QFile::WriteOwner));
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    m_database.setDatabaseName(path);
    if (!m_database.open()) {
        noted(m_database.lastError());
        qCDebug(debugLog) << "sqlitedatabase return false db.open";
        return false;
    }
    setWaitsForLocks(true);
    execute(Sql::useLargeCache);
    // An interrupted creation may also leave pages, and a journal by which SQLite rolls them back
    // at the first read. A file that still is not empty is not repaired here.
    if (existed) {
        number(Sql::countTables);
        if (QFileInfo(path).size() > 0)
            return true;
    }
    if (!createTable()) {
        qCDebug(debugLog) << "sqlitedatabase return false createdatabase";
        return false;
    }
    return true;
}

bool SqliteDatabase::openReadOnly()
{
    closeDatabase();
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    m_database.setDatabaseName(filePath());
    m_database.setConnectOptions(readingOnly);
    return m_database.open() || noted(m_database.lastError());
}

void SqliteDatabase::closeDatabase()
{
    if (!m_database.isValid())
        return;
    const QString connection = m_database.connectionName();
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
    m_transactionDepth = 0;
    m_rollBack = false;
}

void SqliteDatabase::clearContacts()
{
    execute(Sql::deleteAll);
}

bool SqliteDatabase::createTable()
{
    return execute(Sql::createTable);
}

bool SqliteDatabase::insertColumns(const ColumnMap &columns)
{
    const QList<QVariantList> contactList = columns.value(contactTable);
    qCDebug(debugLog) << "insert_map =" << columns;
    qCDebug(debugLog) << "contactList =" << contactList;
    ScopedTransaction transaction(*this);
    if (!transaction.isOpen())
        return false;
    QSqlQuery query = newQuery();
    const bool prepared = query.prepare(Sql::insertRow);
    qCDebug(debugLog) << "contactList.size()" << contactList.size();
    for (const QVariantList &values : contactList) {
        qCDebug(debugLog) << "contactList[i] is" << values;
        query.addBindValue(values);
    }
    // Qt executes no batch without values.
    const bool nothingToDo = contactList.isEmpty() || contactList.first().isEmpty();
    if (prepared && !nothingToDo)
        query.execBatch();
    const bool inserted = nothingToDo || succeeded(query);
    if (!inserted)
        noteInsertFailed();
    // Commits also after a failed row: the owner of the outermost transaction decides about the
    // rows before it.
    return transaction.commit() && inserted;
}

/// Explains why no row could be inserted, if the table has grown.
void SqliteDatabase::noteInsertFailed()
{
    if (number(Sql::countColumns) > contactTableColumns)
        m_lastErrorText = tr("a newer version of this program has written the database");
}

bool SqliteDatabase::updateFields(const QString &table, const QStringList &columns,
                                  const QStringList &values)
{
    bool updated = true;
    for (int i = 1; i < columns.size() && i < values.size(); ++i) {
        updated = execute(
            Sql::updateField.arg(table, columns.at(i), values.at(i), columns.at(0), values.at(0)));
    }
    return updated;
}

bool SqliteDatabase::deleteAll()
{
    return execute(Sql::deleteAll);
}

void SqliteDatabase::setMode(int mode)
{
    m_mode = mode;
}

bool SqliteDatabase::mergeNewRecords()
{
    useUtf8AsLocaleCodec();
    const int settled = number(Sql::countSettled);
    const int fresh = number(Sql::countNew);
    if (settled != 0 && fresh != 0)
        execute(Sql::dropReplaced);
    return execute(Sql::settleNew);
}

int SqliteDatabase::deleteSome(int count)
{
    QSqlQuery query = newQuery();
    query.prepare(Sql::deleteSome);
    query.addBindValue(count);
    query.exec();
    return succeeded(query) ? query.numRowsAffected() : -1;
}

bool SqliteDatabase::insertSettled(const DeviceListSnapshot &list, int first, int count)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (!m_database.isOpen())
        return noted(notOpen());
    sqlite3 *const database = handleOf(m_database);
    RowInserter rows(database, Sql::insertRow);
    bool inserted = rows.isPrepared();
    const int end = std::min(first + count, list.size());
    for (int row = first; inserted && row < end; ++row)
        inserted = rows.insert(list.at(row).number, list.infoAt(row));
    if (!inserted) {
        noted(errorOf(database));
        noteInsertFailed();
    }
    return inserted;
}

QList<ContactInfo> SqliteDatabase::queryContacts()
{
    const std::unique_ptr<ContactReader> reader = readContacts();
    QList<ContactInfo> contacts;
    while (reader->readOn(rowsReadAtOnce, contacts)) {
    }
    return m_lastErrorText.isEmpty() ? contacts : QList<ContactInfo>();
}

std::unique_ptr<ContactReader> SqliteDatabase::readContacts()
{
    qCDebug(debugLog) << "getCSInfo.";
    useUtf8AsLocaleCodec();
    return std::make_unique<Reader>(*this);
}

bool SqliteDatabase::insertContacts(const QList<ContactInfo> &contacts)
{
    QList<QVariantList> columns;
    const auto addColumn = [&](auto valueOf) {
        QVariantList values;
        values.reserve(contacts.size());
        std::transform(contacts.begin(), contacts.end(), std::back_inserter(values), valueOf);
        columns.append(values);
    };
    addColumn([](const ContactInfo &contact) { return contact.id; });
    for (const ContactField &field : contactTableFields()) {
        // A null text would be stored as NULL instead of the empty text.
        addColumn([&](const ContactInfo &contact) {
            const QString &text = contact.*field.member;
            return text.isNull() ? QString(QLatin1String("")) : text;
        });
    }
    addColumn([](const ContactInfo &) { return 1; });
    return insertColumns({{contactTable, columns}});
}

bool SqliteDatabase::beginTransaction()
{
    return begin(Sql::begin);
}

bool SqliteDatabase::beginReading()
{
    if (!begin(Sql::beginReading))
        return false;
    // Only the first read takes the lock that keeps others off.
    const bool readable = number(Sql::countTables) >= 0;
    if (!readable)
        rollbackTransaction();
    return readable;
}

bool SqliteDatabase::begin(const QString &statement)
{
    if (m_transactionDepth == 0) {
        m_rollBack = false;
        if (!execute(statement))
            return false;
    }
    ++m_transactionDepth;
    return true;
}

bool SqliteDatabase::commitTransaction()
{
    if (--m_transactionDepth > 0)
        return !m_rollBack;
    if (!m_rollBack && execute(Sql::commit))
        return true;
    newQuery().exec(Sql::rollback);
    return false;
}

void SqliteDatabase::rollbackTransaction()
{
    m_rollBack = true;
    if (--m_transactionDepth == 0)
        newQuery().exec(Sql::rollback);
}

QString SqliteDatabase::filePath() const
{
    return m_directory + databaseName;
}

int SqliteDatabase::countContacts()
{
    return number(Sql::countAll);
}

int SqliteDatabase::dataVersion()
{
    return number(Sql::dataVersion);
}

void SqliteDatabase::setWaitsForLocks(bool wait)
{
    execute(wait ? Sql::waitForLocks : Sql::failOnLocks);
}

bool SqliteDatabase::lastErrorIsLock() const
{
    return m_lastErrorCode == SQLITE_BUSY || m_lastErrorCode == SQLITE_LOCKED;
}

bool SqliteDatabase::lastErrorIsMove() const
{
    return m_lastErrorCode == SQLITE_READONLY_DBMOVED;
}

QSqlQuery SqliteDatabase::newQuery() const
{
    Q_ASSERT(QThread::currentThread() == thread());
    return QSqlQuery(m_database);
}

bool SqliteDatabase::execute(const QString &statement)
{
    QSqlQuery query = newQuery();
    query.exec(statement);
    return succeeded(query);
}

/// Whether the query's last statement succeeded; notes the reason if not.
bool SqliteDatabase::succeeded(const QSqlQuery &query)
{
    // On a closed database, Qt does not try a statement, which then has no error.
    return noted(m_database.isOpen() ? query.lastError() : notOpen());
}

bool SqliteDatabase::noted(const QSqlError &error)
{
    if (!error.isValid())
        return true;
    const int code = error.nativeErrorCode().toInt();
    m_lastErrorCode = code == SQLITE_READONLY_DBMOVED ? code : code & primaryCode;
    m_lastErrorText = reason(error, m_lastErrorCode);
    // SQLite would have to write to roll an interrupted save back.
    if (m_lastErrorCode == SQLITE_READONLY && m_database.connectOptions() == readingOnly)
        m_lastErrorText = tr("the last save was cut short, which the next start of the program "
                             "puts right");
    qCDebug(debugLog) << error;
    return false;
}

/// The number that the statement returns, or -1.
int SqliteDatabase::number(const QString &statement)
{
    QSqlQuery query = newQuery();
    query.exec(statement);
    if (query.next())
        return query.value(0).toInt();
    succeeded(query);
    return -1;
}
