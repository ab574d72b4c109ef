#include "storage/DBOperator.h"

#include "model/DebugLog.h"
#include "storage/ScopedTransaction.h"
#include "storage/SqliteDatabase.h"

#include <algorithm>

DBOperator *DBOperator::instance()
{
    static auto *const dbOperator = new DBOperator;
    return dbOperator;
}

DBOperator::DBOperator(const QString &directory, QObject *parent)
    : QObject(parent)
    , m_directory(directory)
{
}

DatabaseLayer *DBOperator::database()
{
    if (!m_database)
        m_database = new SqliteDatabase(m_directory, this);
    return m_database;
}

bool DBOperator::save(const DeviceListSnapshot &list)
{
    ScopedTransaction transaction(*database());
    bool saved = transaction.isOpen();
    for (int row = 0; saved && row < list.size(); row += rowsAtOnce)
        saved = saveRows(list, row, rowsAtOnce);
    return saved && transaction.commit();
}

bool DBOperator::saveRows(const DeviceListSnapshot &list, int first, int count)
{
    const int end = std::min(first + count, list.size());
    QList<ContactInfo> contacts;
    contacts.reserve(end - first);
    for (int row = first; row < end; ++row) {
        const DeviceNode node = list.at(row);
        contacts.append(node.info);
        ContactInfo &record = contacts.last();
        record.id = node.number;
        qCDebug(debugLog) << "ctList.dns_server1 = " << node.info.dns_server1;
        qCDebug(debugLog) << "ctList.dns_server2 = " << node.info.dns_server2;
        qCDebug(debugLog) << "csInfo.dns_server1 = " << record.dns_server1;
        qCDebug(debugLog) << "dns_server2 = " << record.dns_server2;
    }
    return database()->insertContacts(contacts);
}

QList<ContactInfo> DBOperator::load()
{
    return database()->queryContacts();
}
