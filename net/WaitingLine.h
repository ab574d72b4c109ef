#pragma once

#include <QHash>
#include <QQueue>
#include <QVector>

#include <cstdint>
#include <functional>
#include <optional>

/// An accepted connection that nobody serves yet.
struct AcceptedConnection
{
    std::intptr_t descriptor = -1;
    quint32 peer = 0; ///< the client's IPv4 address
};

/// Accepted connections that wait to be served, with a queue for each address. The addresses take
/// turns, so however many connections one has, those of the others are served between them.
///
/// Knows nothing of threads; descriptors are whose they were.
class WaitingLine
{
public:
    using MayServe = std::function<bool(quint32 peer)>;

    int size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }

    void add(const AcceptedConnection &connection);
    /// True when an address that `mayServe` allows has a connection here.
    bool has(const MayServe &mayServe) const;
    /// The oldest connection of the address whose turn it is, of those that `mayServe` allows.
    std::optional<AcceptedConnection> take(const MayServe &mayServe);
    /// The newest connection of the address that has most here. Not while the line is empty.
    AcceptedConnection takeFromLongest();
    /// How many connections the address has that has most here.
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
