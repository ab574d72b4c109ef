#pragma once

#include "FilePermissions.h"
#include "model/ContactFields.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>
#include <QVariant>

/// A connection of its own to a database file, so that a test sees what is in the file and not what
/// the store believes.
class RawDatabase
{
public:
    explicit RawDatabase(const QString &path)
        : m_name(QUuid::createUuid().toString())
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        database.setDatabaseName(path);
        database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
        database.open();
    }
    ~RawDatabase()
    {
        QSqlDatabase::database(m_name, false).close();
        QSqlDatabase::removeDatabase(m_name);
    }
    RawDatabase(const RawDatabase &) = delete;
    RawDatabase &operator=(const RawDatabase &) = delete;

    bool exec(const QString &statement) const
    {
        QSqlQuery query(QSqlDatabase::database(m_name, false));
        return query.exec(statement);
    }

    /// The first column of the first row; invalid when there is none.
    QVariant value(const QString &statement) const
    {
        QSqlQuery query(QSqlDatabase::database(m_name, false));
        return query.exec(statement) && query.next() ? query.value(0) : QVariant();
    }

    /// All rows in the order in which they were written.
    QList<QSqlRecord> rows() const
    {
        QList<QSqlRecord> records;
        QSqlQuery query(QSqlDatabase::database(m_name, false));
        query.exec(QStringLiteral("select * from contact1 order by rowid"));
        while (query.next())
            records.append(query.record());
        return records;
    }

    /// How the table differs from holding exactly these devices, numbered from 1 and settled; empty
    /// when it does not.
    QString difference(const QList<ContactInfo> &devices) const
    {
        const QList<QSqlRecord> records = rows();
        if (records.size() != devices.size())
            return QStringLiteral("%1 rows for %2 devices").arg(records.size()).arg(devices.size());
        for (int row = 0; row < records.size(); ++row) {
            const QSqlRecord &record = records.at(row);
            if (record.value(QStringLiteral("id")).toInt() != row + 1)
                return QStringLiteral("row %1: wrong id").arg(row);
            if (record.value(QStringLiteral("flag")) != 0)
                return QStringLiteral("row %1: not settled").arg(row);
            for (const ContactField &field : contactFields()) {
                const QString column = QLatin1String(field.column);
                const QVariant stored = record.value(column);
                if (stored.isNull() || stored.toString() != devices.at(row).*field.member)
                    return QStringLiteral("row %1: wrong %2").arg(row).arg(column);
            }
        }
        return {};
    }

private:
    QString m_name;
};
