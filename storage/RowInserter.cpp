#include "storage/RowInserter.h"

#include <sqlite3.h>

namespace {

// Places of the values in a row, counted from 1.
constexpr int idPlace = 1;
constexpr int firstTextPlace = 2;
constexpr int flagPlace = firstTextPlace + static_cast<int>(contactFieldCount);

constexpr int settled = 0; // the flag of a row that needs no merge

sqlite3_stmt *prepare(sqlite3 *database, const QString &statement)
{
    sqlite3_stmt *prepared = nullptr;
    sqlite3_prepare16_v2(database, statement.utf16(), -1, &prepared, nullptr);
    return prepared;
}

} // namespace

RowInserter::RowInserter(sqlite3 *database, const QString &statement)
    : m_statement(prepare(database, statement), sqlite3_finalize)
{
    if (!isPrepared())
        return;
    for (std::size_t field = 0; field < m_texts.size(); ++field)
        bindText(field, QString());
    sqlite3_bind_int(m_statement.get(), flagPlace, settled);
}

bool RowInserter::insert(int id, const ContactInfo &device)
{
    sqlite3_bind_int(m_statement.get(), idPlace, id);
    std::size_t field = 0;
    for (const ContactField &one : contactTableFields()) {
        const QString &text = device.*one.member;
        if (text != m_texts[field] && !bindText(field, text))
            return false;
        ++field;
    }
    sqlite3_step(m_statement.get());
    return sqlite3_reset(m_statement.get()) == SQLITE_OK;
}

bool RowInserter::bindText(std::size_t field, const QString &text)
{
    m_texts[field] = text;
    const QString &bound = m_texts[field];
    const int bytes = bound.size() * static_cast<int>(sizeof(QChar));
    return sqlite3_bind_text16(m_statement.get(), firstTextPlace + static_cast<int>(field),
                               bound.constData(), bytes, SQLITE_STATIC) == SQLITE_OK;
}
