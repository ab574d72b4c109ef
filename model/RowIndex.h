#pragma once

#include <QtGlobal>

#include <cstddef>
#include <utility>
#include <vector>

/// A hash table from keys to the first row that carries each. The keys stay in the rows: the caller
/// passes a key's hash, and `same(row)` to tell whether a row carries that key. A plain value.
class RowIndex
{
public:
    /// Empties the table and makes room for this many rows.
    void reset(int rows)
    {
        std::size_t size = smallestSize;
        while (size < 2 * static_cast<std::size_t>(rows))
            size *= 2;
        m_slots.assign(size, Slot());
        m_used = 0;
    }

    /// The row of the key with this hash, or -1. O(1).
    template <typename Same>
    int find(uint hash, Same &&same) const
    {
        for (std::size_t place = mixed(hash); !m_slots.empty(); ++place) {
            const Slot &slot = m_slots[place & (m_slots.size() - 1)];
            if (slot.row < 0 || (slot.hash == hash && same(slot.row)))
                return slot.row;
        }
        return -1;
    }

    /// Enters `row` for a key that no row has yet. O(1).
    void insert(uint hash, int row)
    {
        if (2 * (m_used + 1) > m_slots.size())
            grow();
        put({hash, row});
    }

    /// The key of `row` belongs to `other` from now on. O(1).
    void replace(uint hash, int row, int other) { m_slots[placeOf(hash, row)].row = other; }

    /// Removes the key of `row`, which must have one. O(1).
    void remove(uint hash, int row)
    {
        // An entry that a collision put behind the gap moves into it.
        std::size_t gap = placeOf(hash, row);
        const std::size_t mask = m_slots.size() - 1;
        for (std::size_t place = (gap + 1) & mask; m_slots[place].row >= 0;
             place = (place + 1) & mask) {
            const std::size_t wanted = mixed(m_slots[place].hash) & mask;
            if (((place - wanted) & mask) >= ((place - gap) & mask)) {
                m_slots[gap] = m_slots[place];
                gap = place;
            }
        }
        m_slots[gap] = Slot();
        --m_used;
    }

    /// Moves the rows behind `removedRow` up by one. O(n).
    void closeGap(int removedRow)
    {
        for (Slot &slot : m_slots) {
            if (slot.row > removedRow)
                --slot.row;
        }
    }

private:
    struct Slot
    {
        uint hash = 0;
        int row = -1; ///< -1 in a free slot
    };
    static constexpr std::size_t smallestSize = 16; ///< a power of two, as every size

    /// Spreads the hashes: consecutive addresses have consecutive hashes, which would cluster in
    /// the table.
    static std::size_t mixed(uint hash)
    {
        constexpr quint64 goldenRatio = 0x9E3779B97F4A7C15U;
        return static_cast<std::size_t>((hash * goldenRatio) >> 32U);
    }

    std::size_t placeOf(uint hash, int row) const
    {
        std::size_t place = mixed(hash) & (m_slots.size() - 1);
        while (m_slots[place].row != row)
            place = (place + 1) & (m_slots.size() - 1);
        return place;
    }

    void grow()
    {
        const std::vector<Slot> before = std::move(m_slots);
        reset(static_cast<int>(before.size()));
        for (const Slot &slot : before) {
            if (slot.row >= 0)
                put(slot);
        }
    }

    void put(const Slot &slot)
    {
        std::size_t place = mixed(slot.hash) & (m_slots.size() - 1);
        while (m_slots[place].row >= 0)
            place = (place + 1) & (m_slots.size() - 1);
        m_slots[place] = slot;
        ++m_used;
    }

    std::vector<Slot> m_slots; ///< at least half are free, so that a search ends soon
    std::size_t m_used = 0;
};
