#pragma once

#include "model/ContactFields.h"

#include <QString>

#include <array>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

/// Inserts devices into the table row by row, for a long list. Qt's batch mode binds all values of
/// each row, which takes longer than SQLite's own work. This class binds only the values that
/// changed: most columns of a list repeat one value.
class RowInserter
{
public:
    /// `statement` has a placeholder for each of the table's columns. The database must stay open
    /// as long as this object lives; its error tells why a call failed.
    RowInserter(sqlite3 *database, const QString &statement);

    bool isPrepared() const { return m_statement != nullptr; }
    /// Inserts a row that needs no merge. False when SQLite refuses it.
    bool insert(int id, const ContactInfo &device);

private:
    bool bindText(std::size_t field, const QString &text);

    /// The bound texts. SQLite reads them from here and makes no copies.
    std::array<QString, contactFieldCount> m_texts;
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt *)> m_statement;
};
