#pragma once

#include "model/ContactInfo.h"
#include "model/TextPool.h"

#include <QList>

#include <memory>
#include <mutex>

/// One entry of the device list: the running number under which the window shows it, and the
/// record, which lives as long as the list or snapshot that it was asked of stays as it is.
struct DeviceNode
{
    qint32 number;
    const ContactInfo &info;
};

/// Some rows of a list as they were at one moment. Copying is O(1); shares the records with the
/// lists that have them.
class DeviceRows
{
public:
    DeviceRows() = default;

    int size() const;
    const ContactInfo &infoAt(int row) const;

private:
    friend class DeviceList;
    friend class DeviceListSnapshot;
    struct Records;
    std::shared_ptr<const Records> m_records;
};

/// The device list as it was at one moment. Copying is O(1) and the contents never change, so a
/// snapshot may be read on any thread without a lock. Snapshots share the records that no change
/// between them has touched.
class DeviceListSnapshot
{
public:
    /// An empty list of version 0.
    DeviceListSnapshot();

    int size() const;
    bool isEmpty() const { return size() == 0; }
    /// The entry at `row` (must exist). Its number is its position, counted from 1.
    DeviceNode at(int row) const;
    /// The record alone, which lives as long as the snapshot: for who looks at very many.
    const ContactInfo &infoAt(int row) const;
    /// Whether this row holds the same texts as that row of another snapshot. Fast where the two
    /// share the record.
    bool isSameRecord(int row, const DeviceListSnapshot &other, int otherRow) const;

    /// Row of the first device with exactly this MAC text, or -1. O(1).
    int rowOfMac(const QString &mac) const;
    /// Row of the first device whose MAC has this look-up form, see bareMac(), or -1. The given
    /// text is compared as it stands. O(1).
    int rowOfBareMac(const QString &bare) const;

    /// Grows by at least one with every change of the list; equal versions of one list mean equal
    /// contents.
    quint64 version() const;

    /// Rows of this list, which must exist. O(count).
    DeviceRows rows(int first, int count) const;
    /// The records alone, in list order; each record's id is its running number. O(n).
    QList<ContactInfo> contacts() const;

private:
    friend class DeviceList;
    struct State;
    explicit DeviceListSnapshot(std::shared_ptr<const State> state);
    std::shared_ptr<const State> m_state;
};

/// The one ordered list of devices: display order, running numbers, look-up by MAC.
///
/// Changes come from one thread only, the owner's (the thread that created the list); every change
/// asserts that. snapshot() and version() may be called on any thread. The list owns the lock that
/// makes this safe; no lock is held while anybody else's code runs.
class DeviceList
{
public:
    DeviceList();
    /// A list of its own that begins with these contents, to be changed aside and handed over by
    /// adopt().
    explicit DeviceList(const DeviceListSnapshot &contents);
    ~DeviceList();
    DeviceList(const DeviceList &) = delete;
    DeviceList &operator=(const DeviceList &) = delete;

    /// The present contents. O(1), any thread.
    DeviceListSnapshot snapshot() const;
    /// See DeviceListSnapshot::version(). Any thread.
    quint64 version() const;

    /// As in the snapshot, on the present contents. Owner's thread only: asking here rather than a
    /// fresh snapshot spares the next change a copy.
    int rowOfMac(const QString &mac) const;
    int rowOfBareMac(const QString &bare) const;
    /// Row of the first device with this running number, or -1.
    int rowOfNumber(qint32 number) const;
    DeviceNode at(int row) const;
    int size() const;

    /// Appends a record under the next running number.
    void append(const ContactInfo &info);
    /// Appends a row of another list, sharing the record.
    void append(const DeviceListSnapshot &from, int row);
    void append(const DeviceRows &from, int row);
    /// Replaces the record at `row` (must exist), keeping the entry's place; its running number
    /// becomes its position plus one.
    void replaceAt(int row, const ContactInfo &info);
    /// Removes the entry at `row` (must exist) and renumbers.
    void removeAt(int row);
    /// Empties the list; the next running number is 1 again.
    void clear();
    /// Replaces the whole contents, numbered from 1.
    void assign(const QList<ContactInfo> &contacts);
    /// Takes over the contents of a list that was made aside, which is empty afterwards. O(1).
    void adopt(DeviceList &aside);

private:
    using State = DeviceListSnapshot::State;
    template <typename Change>
    void change(Change &&change);

    mutable std::mutex m_mutex; ///< guards the two members below against snapshot() and version()
    std::shared_ptr<State> m_state;
    mutable bool m_handedOut = false; ///< a snapshot of m_state may exist
    TextPool m_texts; ///< of the present devices, and of some that are gone; the owner's
    const void *m_ownerThread;
};
