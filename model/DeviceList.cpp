#include "model/DeviceList.h"

#include "model/ContactFields.h"
#include "model/MacAddress.h"

#include <QExplicitlySharedDataPointer>
#include <QHash>
#include <QSharedData>
#include <QThread>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

struct Record : QSharedData
{
    explicit Record(const ContactInfo &contact)
        : info(contact)
    {
    }
    const ContactInfo info;
};
using RecordPointer = QExplicitlySharedDataPointer<const Record>;
using Records = std::vector<RecordPointer>;

/// The first row that carries each key.
using RowByKey = QHash<QString, int>;

struct Index
{
    RowByKey byMac;
    RowByKey byBareMac;
};

QString exactMac(const Record &record)
{
    return record.info.mac;
}

QString lookUpMac(const Record &record)
{
    return bareMac(record.info.mac);
}

/// Says of `key`, which `row` carries no more, which row is the first to carry it now. `records`
/// has the row out already, or changed.
template <typename KeyOf>
void findNext(RowByKey &rows, const QString &key, int row, const Records &records, KeyOf keyOf)
{
    for (auto next = static_cast<std::size_t>(row); next < records.size(); ++next) {
        if (keyOf(*records[next]) == key) {
            rows.insert(key, static_cast<int>(next));
            return;
        }
    }
    rows.remove(key);
}

void addKey(RowByKey &rows, const QString &key, int row)
{
    const auto found = rows.constFind(key);
    if (found == rows.constEnd() || found.value() > row)
        rows.insert(key, row);
}

void closeGap(RowByKey &rows, int removedRow)
{
    for (int &row : rows) {
        if (row > removedRow)
            --row;
    }
}

} // namespace

struct DeviceListSnapshot::State
{
    quint64 version = 0;
    Records records;
    std::shared_ptr<Index> index = std::make_shared<Index>();
    bool indexIsShared = false; ///< another state may have it: to be copied before it is changed

    State() = default;
    /// Shares the records and the index. The vector is a copy at once: left to an implicitly shared
    /// container, the two would part at the first change, unless the last reader has let go by
    /// then, and what it did before would not be seen to come before the change.
    State(const State &other)
        : version(other.version)
        , records(other.records)
        , index(other.index)
        , indexIsShared(true)
    {
    }
    State &operator=(const State &) = delete;

    int size() const { return static_cast<int>(records.size()); }
    const Record &at(int row) const { return *records[static_cast<std::size_t>(row)]; }
    DeviceNode nodeAt(int row) const { return {row + 1, at(row).info}; }

    void append(const ContactInfo &info)
    {
        records.emplace_back(new Record(info));
        addKeysOf(size() - 1);
    }

    void replaceAt(int row, const ContactInfo &info)
    {
        RecordPointer &place = records[static_cast<std::size_t>(row)];
        const RecordPointer old = std::exchange(place, RecordPointer(new Record(info)));
        if (old->info.mac == info.mac)
            return;
        removeKeysOf(*old, row);
        addKeysOf(row);
    }

    void removeAt(int row)
    {
        const RecordPointer old = records[static_cast<std::size_t>(row)];
        records.erase(records.begin() + row);
        Index &rows = ownIndex();
        closeGap(rows.byMac, row);
        closeGap(rows.byBareMac, row);
        removeKeysOf(*old, row);
    }

    void assign(const QList<ContactInfo> &contacts)
    {
        records.clear();
        records.reserve(static_cast<std::size_t>(contacts.size()));
        index = std::make_shared<Index>();
        indexIsShared = false;
        index->byMac.reserve(contacts.size());
        index->byBareMac.reserve(contacts.size());
        for (const ContactInfo &info : contacts)
            append(info);
    }

private:
    Index &ownIndex()
    {
        if (indexIsShared) {
            auto copy = std::make_shared<Index>(*index);
            copy->byMac.detach();
            copy->byBareMac.detach();
            index = std::move(copy);
            indexIsShared = false;
        }
        return *index;
    }

    void addKeysOf(int row)
    {
        Index &rows = ownIndex();
        addKey(rows.byMac, exactMac(at(row)), row);
        addKey(rows.byBareMac, lookUpMac(at(row)), row);
    }

    /// Of a record that stood at `row`. What stood behind it has its place in the index already.
    void removeKeysOf(const Record &old, int row)
    {
        Index &rows = ownIndex();
        if (rows.byMac.value(exactMac(old)) == row)
            findNext(rows.byMac, exactMac(old), row, records, exactMac);
        if (rows.byBareMac.value(lookUpMac(old)) == row)
            findNext(rows.byBareMac, lookUpMac(old), row, records, lookUpMac);
    }
};

DeviceListSnapshot::DeviceListSnapshot()
    : m_state(std::make_shared<const State>())
{
}

DeviceListSnapshot::DeviceListSnapshot(std::shared_ptr<const State> state)
    : m_state(std::move(state))
{
}

int DeviceListSnapshot::size() const
{
    return m_state->size();
}

DeviceNode DeviceListSnapshot::at(int row) const
{
    return m_state->nodeAt(row);
}

bool DeviceListSnapshot::isSameRecord(int row, const DeviceListSnapshot &other, int otherRow) const
{
    const Record &mine = m_state->at(row);
    const Record &theirs = other.m_state->at(otherRow);
    const auto &fields = contactFields();
    return &mine == &theirs ||
           std::all_of(fields.begin(), fields.end(), [&](const ContactField &field) {
               return mine.info.*field.member == theirs.info.*field.member;
           });
}

int DeviceListSnapshot::rowOfMac(const QString &mac) const
{
    return m_state->index->byMac.value(mac, -1);
}

int DeviceListSnapshot::rowOfBareMac(const QString &bare) const
{
    return m_state->index->byBareMac.value(bare, -1);
}

quint64 DeviceListSnapshot::version() const
{
    return m_state->version;
}

QList<ContactInfo> DeviceListSnapshot::contacts() const
{
    QList<ContactInfo> contacts;
    contacts.reserve(size());
    for (int row = 0; row < size(); ++row) {
        contacts.append(at(row).info);
        contacts.last().id = row + 1;
    }
    return contacts;
}

DeviceList::DeviceList()
    : DeviceList(DeviceListSnapshot())
{
}

DeviceList::DeviceList(const DeviceListSnapshot &contents)
    : m_state(std::make_shared<State>(*contents.m_state))
    , m_ownerThread(QThread::currentThread())
{
}

DeviceList::~DeviceList() = default;

DeviceListSnapshot DeviceList::snapshot() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_handedOut = true;
    return DeviceListSnapshot(m_state);
}

quint64 DeviceList::version() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_state->version;
}

int DeviceList::rowOfMac(const QString &mac) const
{
    return m_state->index->byMac.value(mac, -1);
}

int DeviceList::rowOfBareMac(const QString &bare) const
{
    return m_state->index->byBareMac.value(bare, -1);
}

int DeviceList::rowOfNumber(qint32 number) const
{
    return number >= 1 && number <= size() ? number - 1 : -1;
}

DeviceNode DeviceList::at(int row) const
{
    return m_state->nodeAt(row);
}

int DeviceList::size() const
{
    return m_state->size();
}

/// Runs `change` on a state that nobody else can see: whoever holds a snapshot keeps the old state.
/// Whether one was handed out is a flag under the lock, not the pointer's use count, which another
/// thread may lower at any moment without telling this one what it has finished reading.
template <typename Change>
void DeviceList::change(Change &&change)
{
    Q_ASSERT_X(QThread::currentThread() == m_ownerThread, "DeviceList",
               "changed off the owner's thread");
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_handedOut) {
        m_state = std::make_shared<State>(*m_state);
        m_handedOut = false;
    }
    change(*m_state);
    ++m_state->version;
}

void DeviceList::append(const ContactInfo &info)
{
    change([&](State &state) { state.append(info); });
}

void DeviceList::replaceAt(int row, const ContactInfo &info)
{
    change([&](State &state) { state.replaceAt(row, info); });
}

void DeviceList::removeAt(int row)
{
    change([&](State &state) { state.removeAt(row); });
}

void DeviceList::clear()
{
    assign({});
}

void DeviceList::assign(const QList<ContactInfo> &contacts)
{
    change([&](State &state) { state.assign(contacts); });
}

void DeviceList::adopt(DeviceList &aside)
{
    DeviceList empty;
    std::swap(aside.m_state, empty.m_state);
    const bool handedOut = std::exchange(aside.m_handedOut, false);
    Q_ASSERT_X(!handedOut, "DeviceList", "a list made aside belongs to its maker alone");
    const std::lock_guard<std::mutex> lock(m_mutex);
    empty.m_state->version = m_state->version + 1;
    std::swap(m_state, empty.m_state);
    m_handedOut = handedOut;
}
