#include "model/DeviceList.h"

#include "model/ContactFields.h"
#include "model/MacAddress.h"
#include "model/RowIndex.h"

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

/// The first row of each address, by its exact text and by its look-up form.
struct Index
{
    RowIndex byMac;
    RowIndex byBareMac;
};

QString exactMac(const Record &record)
{
    return record.info.mac;
}

QString lookUpMac(const Record &record)
{
    return bareMac(record.info.mac);
}

template <typename KeyOf>
int findRow(const RowIndex &rows, const QString &key, const Records &records, KeyOf keyOf)
{
    return rows.find(
        qHash(key), [&](int row) { return keyOf(*records[static_cast<std::size_t>(row)]) == key; });
}

/// Enters the key of `row`, unless an earlier row carries it.
template <typename KeyOf>
void addKey(RowIndex &rows, int row, const Records &records, KeyOf keyOf)
{
    const QString key = keyOf(*records[static_cast<std::size_t>(row)]);
    const int found = findRow(rows, key, records, keyOf);
    if (found < 0)
        rows.insert(qHash(key), row);
    else if (found > row)
        rows.replace(qHash(key), found, row);
}

/// Removes the key of `row`, or hands it on to the next row that carries it.
template <typename KeyOf>
void removeKey(RowIndex &rows, int row, const Records &records, KeyOf keyOf)
{
    const QString key = keyOf(*records[static_cast<std::size_t>(row)]);
    if (findRow(rows, key, records, keyOf) != row)
        return;
    for (auto next = static_cast<std::size_t>(row) + 1; next < records.size(); ++next) {
        if (keyOf(*records[next]) == key) {
            rows.replace(qHash(key), row, static_cast<int>(next));
            return;
        }
    }
    rows.remove(qHash(key), row);
}

} // namespace

struct DeviceRows::Records
{
    ::Records rows;
};

struct DeviceListSnapshot::State
{
    quint64 version = 0;
    Records records;
    std::shared_ptr<Index> index = std::make_shared<Index>();
    bool indexIsShared = false; ///< another state may have it: copy it before a change

    State() = default;
    /// Shares the records and the index, but copies the vector at once. An implicitly shared
    /// container would not detach if the last reader had just released it, and nothing would order
    /// that reader's accesses before the change.
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

    void append(RecordPointer record)
    {
        records.push_back(std::move(record));
        addKeysOf(size() - 1);
    }

    void replaceAt(int row, const ContactInfo &info)
    {
        const bool sameMac = at(row).info.mac == info.mac;
        if (!sameMac)
            removeKeysOf(row);
        records[static_cast<std::size_t>(row)] = RecordPointer(new Record(info));
        if (!sameMac)
            addKeysOf(row);
    }

    void removeAt(int row)
    {
        removeKeysOf(row);
        records.erase(records.begin() + row);
        ownIndex().byMac.closeGap(row);
        ownIndex().byBareMac.closeGap(row);
    }

    int rowOfMac(const QString &mac) const { return findRow(index->byMac, mac, records, exactMac); }

    int rowOfBareMac(const QString &bare) const
    {
        return findRow(index->byBareMac, bare, records, lookUpMac);
    }

    void clear(int room)
    {
        records.clear();
        records.reserve(static_cast<std::size_t>(room));
        index = std::make_shared<Index>();
        indexIsShared = false;
        index->byMac.reset(room);
        index->byBareMac.reset(room);
    }

private:
    Index &ownIndex()
    {
        if (indexIsShared) {
            index = std::make_shared<Index>(*index);
            indexIsShared = false;
        }
        return *index;
    }

    void addKeysOf(int row)
    {
        addKey(ownIndex().byMac, row, records, exactMac);
        addKey(ownIndex().byBareMac, row, records, lookUpMac);
    }

    void removeKeysOf(int row)
    {
        removeKey(ownIndex().byMac, row, records, exactMac);
        removeKey(ownIndex().byBareMac, row, records, lookUpMac);
    }
};

int DeviceRows::size() const
{
    return m_records ? static_cast<int>(m_records->rows.size()) : 0;
}

const ContactInfo &DeviceRows::infoAt(int row) const
{
    return m_records->rows[static_cast<std::size_t>(row)]->info;
}

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

const ContactInfo &DeviceListSnapshot::infoAt(int row) const
{
    return m_state->at(row).info;
}

bool DeviceListSnapshot::isSameRecord(int row, const DeviceListSnapshot &other, int otherRow) const
{
    const Record &mine = m_state->at(row);
    const Record &theirs = other.m_state->at(otherRow);
    return &mine == &theirs || hasSameTexts(mine.info, theirs.info);
}

int DeviceListSnapshot::rowOfMac(const QString &mac) const
{
    return m_state->rowOfMac(mac);
}

int DeviceListSnapshot::rowOfBareMac(const QString &bare) const
{
    return m_state->rowOfBareMac(bare);
}

quint64 DeviceListSnapshot::version() const
{
    return m_state->version;
}

DeviceRows DeviceListSnapshot::rows(int first, int count) const
{
    const auto begin = m_state->records.begin() + first;
    DeviceRows rows;
    rows.m_records =
        std::make_shared<const DeviceRows::Records>(DeviceRows::Records{{begin, begin + count}});
    return rows;
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
    return m_state->rowOfMac(mac);
}

int DeviceList::rowOfBareMac(const QString &bare) const
{
    return m_state->rowOfBareMac(bare);
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

/// Runs `change` on a state that nobody else can see: snapshots keep the old one. A flag under the
/// lock tells whether a snapshot was handed out. The pointer's use count cannot: another thread may
/// lower it at any moment, and nothing orders that thread's reads before this change.
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
    ContactInfo own = info;
    m_texts.share(own);
    change([&](State &state) { state.append(RecordPointer(new Record(own))); });
}

void DeviceList::append(const DeviceListSnapshot &from, int row)
{
    change(
        [&](State &state) { state.append(from.m_state->records[static_cast<std::size_t>(row)]); });
}

void DeviceList::append(const DeviceRows &from, int row)
{
    change(
        [&](State &state) { state.append(from.m_records->rows[static_cast<std::size_t>(row)]); });
}

void DeviceList::replaceAt(int row, const ContactInfo &info)
{
    ContactInfo own = info;
    m_texts.share(own);
    change([&](State &state) { state.replaceAt(row, own); });
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
    m_texts.clear();
    change([&](State &state) {
        state.clear(contacts.size());
        for (const ContactInfo &info : contacts) {
            ContactInfo own = info;
            m_texts.share(own);
            state.append(RecordPointer(new Record(own)));
        }
    });
}

void DeviceList::adopt(DeviceList &aside)
{
    Q_ASSERT_X(QThread::currentThread() == m_ownerThread, "DeviceList",
               "changed off the owner's thread");
    m_texts = std::exchange(aside.m_texts, TextPool());
    DeviceList empty;
    std::swap(aside.m_state, empty.m_state);
    const bool handedOut = std::exchange(aside.m_handedOut, false);
    Q_ASSERT_X(!handedOut, "DeviceList", "a list made aside belongs to its maker alone");
    const std::lock_guard<std::mutex> lock(m_mutex);
    empty.m_state->version = m_state->version + 1;
    std::swap(m_state, empty.m_state);
    m_handedOut = handedOut;
}
