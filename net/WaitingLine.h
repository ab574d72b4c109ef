#pragma once

#include <QHash>
#include <QQueue>
#include <QVector>

#include <cstdint>
#include <functional>
#include <optional>

/// An accepted connection that no thread serves yet.
struct AcceptedConnection
{
    std::intptr_t descriptor = -1;
    quint32 peer = 0; ///< the client's IPv4 address
};

/// Accepted connections that wait to be served, with a queue for each address. The addresses take
/// turns, so the many connections of one address do not delay those of the others.
///
/// Knows nothing of threads, and does not own the descriptors.
class WaitingLine
{
public:
    using MayServe = std::function<bool(quint32 peer)>;

    int size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }

    void add(const AcceptedConnection &connection);
    /// True when an address that `mayServe` allows has a connection here.
    bool has(const MayServe &mayServe) const;
    /// Takes the oldest connection of the next address in turn that `mayServe` allows.
    std::optional<AcceptedConnection> take(const MayServe &mayServe);
    /// Takes the newest connection of the address with the most here. The line must not be empty.
    AcceptedConnection takeFromLongest();
    /// The number of connections of the address with the most here.
    int longest() const;
    /// Each address here, in turn.
    const QVector<quint32> &peers() const { return m_turns; }
    /// How many of this address's connections are here.
    int waiting(quint32 peer) const;

private:
    void ended(quint32 peer);

    QHash<quint32, QQueue<std::intptr_t>> m_queues; ///< none of them empty
    QVector<quint32> m_turns;                       ///< their addresses, next turn first
    int m_size = 0;
};
