#include "model/DeviceList.h"

#include "model/MacAddress.h"

#include <QThread>

#include <algorithm>
#include <utility>

struct DeviceListSnapshot::State
{
    quint64 version = 0;
    QVector<DeviceNode> nodes;
    // Each maps to the first row that carries the key.
    QHash<QString, int> rowByMac;
    QHash<QString, int> rowByBareMac;

    State() = default;
    /// Shares nothing with the original but the texts. Left to Qt, the containers would part at the
    /// first change, unless the last reader has let go by then: it would be seen to have, but not
    /// what it did before, so that a change could overtake a look that is still under way.
    State(const State &other)
        : version(other.version)
        , nodes(other.nodes)
        , rowByMac(other.rowByMac)
        , rowByBareMac(other.rowByBareMac)
    {
        nodes.detach();
        rowByMac.detach();
        rowByBareMac.detach();
    }
    State &operator=(const State &) = delete;

    void indexRow(int row)
    {
        const QString &mac = nodes.at(row).info.mac;
        if (!rowByMac.contains(mac))
            rowByMac.insert(mac, row);
        const QString bare = bareMac(mac);
        if (!rowByBareMac.contains(bare))
            rowByBareMac.insert(bare, row);
    }

    void rebuildIndex()
    {
        rowByMac.clear();
        rowByBareMac.clear();
        rowByMac.reserve(nodes.size());
        rowByBareMac.reserve(nodes.size());
        for (int row = 0; row < nodes.size(); ++row)
            indexRow(row);
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
    return m_state->nodes.size();
}

const DeviceNode &DeviceListSnapshot::at(int row) const
{
    return m_state->nodes.at(row);
}

const QVector<DeviceNode> &DeviceListSnapshot::nodes() const
{
    return m_state->nodes;
}

int DeviceListSnapshot::rowOfMac(const QString &mac) const
{
    return m_state->rowByMac.value(mac, -1);
}

int DeviceListSnapshot::rowOfBareMac(const QString &bare) const
{
    return m_state->rowByBareMac.value(bare, -1);
}

quint64 DeviceListSnapshot::version() const
{
    return m_state->version;
}

QList<ContactInfo> DeviceListSnapshot::contacts() const
{
    QList<ContactInfo> contacts;
    contacts.reserve(size());
    for (const DeviceNode &node : m_state->nodes) {
        contacts.append(node.info);
        contacts.last().id = node.number;
    }
    return contacts;
}

DeviceList::DeviceList()
    : m_state(std::make_shared<State>())
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
    return m_state->rowByMac.value(mac, -1);
}

int DeviceList::rowOfBareMac(const QString &bare) const
{
    return m_state->rowByBareMac.value(bare, -1);
}

int DeviceList::rowOfNumber(qint32 number) const
{
    const auto &nodes = m_state->nodes;
    const auto found = std::find_if(nodes.begin(), nodes.end(), [number](const DeviceNode &node) {
        return node.number == number;
    });
    return found == nodes.end() ? -1 : static_cast<int>(found - nodes.begin());
}

const DeviceNode &DeviceList::at(int row) const
{
    return m_state->nodes.at(row);
}

int DeviceList::size() const
{
    return m_state->nodes.size();
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
    change([&](State &state) {
        state.nodes.append({m_nextNumber++, info});
        state.indexRow(state.nodes.size() - 1);
    });
}

void DeviceList::replaceAt(int row, const ContactInfo &info)
{
    change([&](State &state) {
        DeviceNode &node = state.nodes[row];
        const bool sameMac = node.info.mac == info.mac;
        node = {row + 1, info};
        if (!sameMac)
            state.rebuildIndex();
    });
}

void DeviceList::removeAt(int row)
{
    change([&](State &state) {
        state.nodes.removeAt(row);
        state.rebuildIndex();
        for (int i = 0; i < state.nodes.size(); ++i)
            state.nodes[i].number = i + 1;
        m_nextNumber = state.nodes.size() + 1;
    });
}

void DeviceList::clear()
{
    assign({});
}

void DeviceList::assign(const QList<ContactInfo> &contacts)
{
    change([&](State &state) {
        state.nodes.clear();
        state.nodes.reserve(contacts.size());
        for (const ContactInfo &info : contacts)
            state.nodes.append({state.nodes.size() + 1, info});
        m_nextNumber = state.nodes.size() + 1;
        state.rebuildIndex();
    });
}
