#pragma once

#include "model/ContactInfo.h"
#include "model/TextPool.h"

#include <QList>

#include <memory>
#include <mutex>

/// One entry of the device list: the running number that the window shows, and the record. The
/// record is valid until the list or snapshot that returned it changes or is destroyed.
struct DeviceNode
{
    qint32 number;
    const ContactInfo &info;
};

/// Some rows of a list as they were at one moment. Copying is O(1). The records are shared with the
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
    /// The record alone, valid as long as the snapshot. For loops over very many rows.
    const ContactInfo &infoAt(int row) const;
    /// Whether `row` holds the same texts as `otherRow` of another snapshot. Fast where the two
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

    /// `count` rows of this list from `first` on; they must exist. O(count).
    DeviceRows rows(int first, int count) const;
    /// The records alone, in list order; each record's id is its running number. O(n).
    QList<ContactInfo> contacts() const;

private:
    friend class DeviceList;
    struct State;
    explicit DeviceListSnapshot(std::shared_ptr<const State> state);
    std::shared_ptr<const State> m_state;
};

/// The ordered list of devices: display order, running numbers, look-up by MAC.
///
/// Only the owner's thread (the one that created the list) changes it; every change
/// asserts that. snapshot() and version() may be called on any thread. The list owns the lock that
/// makes this safe, and runs no other class's callbacks under it.
class DeviceList
{
public:
    DeviceList();
    /// An independent list that begins with these contents. It can be changed aside and handed over
    /// by adopt().
    explicit DeviceList(const DeviceListSnapshot &contents);
    ~DeviceList();
    DeviceList(const DeviceList &) = delete;
    DeviceList &operator=(const DeviceList &) = delete;

    /// The present contents. O(1), any thread.
    DeviceListSnapshot snapshot() const;
    /// See DeviceListSnapshot::version(). Any thread.
    quint64 version() const;

    /// As in the snapshot, on the present contents. Owner's thread only. Unlike a fresh snapshot,
    /// these calls spare the next change a copy.
    int rowOfMac(const QString &mac) const;
    int rowOfBareMac(const QString &bare) const;
    /// Row of the device with this running number, or -1.
    int rowOfNumber(qint32 number) const;
    DeviceNode at(int row) const;
    int size() const;

    /// Appends a record under the next running number.
    void append(const ContactInfo &info);
    /// Appends a row of another list, sharing the record.
    void append(const DeviceListSnapshot &from, int row);
    void append(const DeviceRows &from, int row);
    /// Replaces the record at `row` (must exist). The entry keeps its place and running number.
    void replaceAt(int row, const ContactInfo &info);
    /// Removes the entry at `row` (must exist) and renumbers.
    void removeAt(int row);
    /// Empties the list; the next running number is 1 again.
    void clear();
    /// Replaces the whole contents, numbered from 1.
    void assign(const QList<ContactInfo> &contacts);
    /// Takes over the contents of `aside`, which is empty afterwards. No snapshot of `aside` may
    /// have been taken since its last change. O(1).
    void adopt(DeviceList &aside);

private:
    using State = DeviceListSnapshot::State;
    template <typename Change>
    void change(Change &&change);

    mutable std::mutex m_mutex; ///< guards the two members below against snapshot() and version()
    std::shared_ptr<State> m_state;
    mutable bool m_handedOut = false; ///< a snapshot of m_state may exist
    TextPool m_texts; ///< of present devices and of some removed ones; owner's thread only
    const void *m_ownerThread;
};
