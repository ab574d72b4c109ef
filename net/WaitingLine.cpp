#include "net/WaitingLine.h"

#include <algorithm>

void WaitingLine::add(const AcceptedConnection &connection)
{
    QQueue<std::intptr_t> &queue = m_queues[connection.peer];
    if (queue.isEmpty())
        m_turns.append(connection.peer);
    queue.enqueue(connection.descriptor);
    ++m_size;
}

bool WaitingLine::has(const MayServe &mayServe) const
{
    return std::any_of(m_turns.begin(), m_turns.end(), mayServe);
}

std::optional<AcceptedConnection> WaitingLine::take(const MayServe &mayServe)
{
    const auto turn = std::find_if(m_turns.begin(), m_turns.end(), mayServe);
    if (turn == m_turns.end())
        return std::nullopt;
    const quint32 peer = *turn;
    std::rotate(turn, turn + 1, m_turns.end());
    const AcceptedConnection connection{m_queues[peer].dequeue(), peer};
    ended(peer);
    return connection;
}

AcceptedConnection WaitingLine::takeFromLongest()
{
    // Of queues of equal length, the one whose turn is furthest off.
    const quint32 peer =
        *std::max_element(m_turns.rbegin(), m_turns.rend(),
                          [this](quint32 a, quint32 b) { return waiting(a) < waiting(b); });
    const AcceptedConnection connection{m_queues[peer].takeLast(), peer};
    ended(peer);
    return connection;
}

int WaitingLine::longest() const
{
    int most = 0;
    for (const QQueue<std::intptr_t> &queue : m_queues)
        most = std::max(most, queue.size());
    return most;
}

int WaitingLine::waiting(quint32 peer) const
{
    const auto queue = m_queues.constFind(peer);
    return queue == m_queues.constEnd() ? 0 : queue->size();
}

/// One connection of this address has left.
void WaitingLine::ended(quint32 peer)
{
    --m_size;
    if (m_queues[peer].isEmpty()) {
        m_queues.remove(peer);
        m_turns.removeOne(peer);
    }
}
