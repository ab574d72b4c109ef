#pragma once

#include "model/ContactFields.h"

#include <QString>

/// The statements of the store. Columns are in the order of contactTableFields(), but for those of
/// selectAll, which follow contactFields().
namespace Sql {
static_assert(contactFieldCount == 24, "contact1 has 24 texts for good: a later one goes into a "
                                       "table of its own, as CONTRIBUTING.md explains");

// In KiB. A full cache writes finished pages of a long list before the commit, which is then short.
// The smaller default cache would also write pages that still change.
inline const QString useLargeCache = QStringLiteral("pragma cache_size=-8192");
// For the end of a reading: the cached pages are not needed again.
inline const QString freeCache = QStringLiteral("pragma shrink_memory");
// In milliseconds, during which the window stands still.
inline const QString waitForLocks = QStringLiteral("pragma busy_timeout=2000");
inline const QString failOnLocks = QStringLiteral("pragma busy_timeout=0");
inline const QString dataVersion = QStringLiteral("pragma data_version");
// Takes the write lock at once, so that what is read first still holds at the first write.
inline const QString begin = QStringLiteral("begin immediate");
inline const QString beginReading = QStringLiteral("begin");
inline const QString commit = QStringLiteral("commit");
inline const QString rollback = QStringLiteral("rollback");
inline const QString createTable = QStringLiteral(
    "create table contact1 (id INT PRIMARY KEY, mac VERCHAR, product VERCHAR, sip_server VERCHAR, "
    "sip_user_id VERCHAR, first_account VERCHAR, username VERCHAR, password VERCHAR, ip VERCHAR, "
    "city VERCHAR, company VERCHAR, department VERCHAR, auth_id VERCHAR, proxy_server VERCHAR, "
    "speech_coding1 VERCHAR, speech_coding2 VERCHAR,dial_plan VERCHAR, language VERCHAR, "
    "random_port VERCHAR, keep_alive VERCHAR, subnet VERCHAR, gateway_ip VERCHAR, "
    "dns_server1 VERCHAR, dns_server2 VERCHAR, phonebook_path VERCHAR, flag INT)");
inline const QString deleteAll = QStringLiteral("delete from contact1");
inline const QString deleteSome =
    QStringLiteral("delete from contact1 where rowid < (select min(rowid) from contact1) + ?");
inline const QString insertRow = QStringLiteral(
    "INSERT INTO contact1 values (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
inline const QString updateField = QStringLiteral("update %1 set %2=%3 where %4=%5");
inline const QString countAll = QStringLiteral("select count(*) from contact1");
inline const QString countColumns =
    QStringLiteral("select count(*) from pragma_table_info('contact1')");
inline const QString countTables = QStringLiteral("select count(*) from sqlite_master");
inline const QString countSettled = QStringLiteral("select count(*) from contact1 where flag = 0");
inline const QString countNew = QStringLiteral("select count(*) from contact1 where flag = 1");
inline const QString dropReplaced = QStringLiteral(
    "delete from contact1 where id in(select p1.id as contact_id from contact1 p1,contact1 p2 "
    "where p1.id<>p2.id and p1.mac=p2.mac and p1.flag<>p2.flag and p1.flag=0)");
inline const QString settleNew = QStringLiteral("update contact1 set flag = 0 where flag = 1");
inline const QString selectAll = QStringLiteral(
    "SELECT contact1.id, contact1.mac, contact1.product, contact1.sip_server, "
    "contact1.sip_user_id, contact1.first_account, contact1.ip, contact1.username, "
    "contact1.password, contact1.city, contact1.company, contact1.department, contact1.auth_id, "
    "contact1.proxy_server, contact1.speech_coding1, contact1.speech_coding2, contact1.dial_plan, "
    "contact1.language, contact1.random_port, contact1.keep_alive, contact1.subnet, "
    "contact1.gateway_ip, contact1.dns_server1, contact1.dns_server2, contact1.phonebook_path "
    "FROM contact1");
} // namespace Sql
