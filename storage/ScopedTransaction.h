#pragma once

#include "storage/DatabaseLayer.h"

/// A transaction that rolls back unless it was committed. Joins a transaction that is open already.
class ScopedTransaction
{
public:
    enum class For { Writing, Reading };

    explicit ScopedTransaction(DatabaseLayer &database, For purpose = For::Writing)
        : m_database(database)
        , m_open(purpose == For::Writing ? database.beginTransaction() : database.beginReading())
    {
    }
    ~ScopedTransaction()
    {
        if (m_open)
            m_database.rollbackTransaction();
    }
    ScopedTransaction(const ScopedTransaction &) = delete;
    ScopedTransaction &operator=(const ScopedTransaction &) = delete;

    bool isOpen() const { return m_open; }

    /// Commits. False when the transaction, or the one that it joined, is or must be rolled back.
    bool commit()
    {
        const bool open = m_open;
        m_open = false;
        return open && m_database.commitTransaction();
    }

private:
    DatabaseLayer &m_database;
    bool m_open;
};
