#include "storage/DBOperator.h"

#include "model/DebugLog.h"
#include "storage/SqliteDatabase.h"

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
    const QList<ContactInfo> contacts = list.contacts();
    if (debugLog().isDebugEnabled()) {
        for (int row = 0; row < contacts.size(); ++row) {
            const ContactInfo &node = list.at(row).info;
            const ContactInfo &record = contacts.at(row);
            qCDebug(debugLog) << "ctList.dns_server1 = " << node.dns_server1;
            qCDebug(debugLog) << "ctList.dns_server2 = " << node.dns_server2;
            qCDebug(debugLog) << "csInfo.dns_server1 = " << record.dns_server1;
            qCDebug(debugLog) << "dns_server2 = " << record.dns_server2;
        }
    }
    return database()->insertContacts(contacts);
}

QList<ContactInfo> DBOperator::load()
{
    return database()->queryContacts();
}
