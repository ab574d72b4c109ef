#include "storage/DBOperator.h"

#include "model/DebugLog.h"
#include "storage/ScopedTransaction.h"
#include "storage/SqliteDatabase.h"

#include <algorithm>

namespace {

// So few that the window need not wait for them, and that their values stay in the processor's
// cache on the way to the store.
constexpr int rowsAtOnce = 250;

} // namespace

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

bool DBOperator::save(const DeviceListSnapshot &list, const std::function<void()> &breathe)
{
    ScopedTransaction transaction(*database());
    bool saved = transaction.isOpen();
    int row = 0;
    do {
        const int count = std::min(rowsAtOnce, list.size() - row);
        saved = saved && saveRows(list.nodes(), row, count);
        row += count;
        if (breathe)
            breathe();
    } while (saved && row < list.size());
    return saved && transaction.commit();
}

bool DBOperator::saveRows(const QVector<DeviceNode> &nodes, int first, int count)
{
    QList<ContactInfo> contacts;
    contacts.reserve(count);
    for (int row = first; row < first + count; ++row) {
        const DeviceNode &node = nodes.at(row);
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

QList<ContactInfo> DBOperator::load(const ContactsRead &onTheWay)
{
    return database()->queryContacts(onTheWay);
}
