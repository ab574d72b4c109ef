#pragma once

#include <QFile>
#include <QString>

#include <array>

/// The database's file in its folder.
inline const QString databaseName = QStringLiteral("phonebook.db");

/// The endings of a database's files: the journals that its last writer may have left, which SQLite
/// applies when it next opens the database, and the database itself. SQLite would apply a journal
/// left behind to the next database of that name.
constexpr std::array<const char *, 3> databaseParts = {"-journal", "-wal", ""};

/// Removes those of the database's files that exist.
inline void removeDatabase(const QString &filePath)
{
    for (const char *const part : databaseParts)
        QFile::remove(filePath + QLatin1String(part));
}
