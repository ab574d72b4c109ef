#include "net/RequestRows.h"

namespace {

quint64 keyOf(quint32 peer, RequestEnd::Protocol protocol)
{
    return (quint64(protocol) << 32) | peer;
}

/// Stands for all addresses that are not told apart; no host has it.
constexpr quint32 others = 0;

} // namespace

void RequestRows::add(const RequestEnd &request)
{
    if (request.time != m_second)
        closeSecond(request.time);
    const bool isKnown =
        m_shares.size() < addresses || m_shares.count(keyOf(request.peer, request.protocol)) > 0;
    Share &share = m_shares[keyOf(isKnown ? request.peer : others, request.protocol)];
    if (isKnown && share.rows < rowsOfOne && m_rows.size() < mostRows) {
        ++share.rows;
        m_rows.push_back({request, 0});
        return;
    }
    ++share.rest;
    share.restBytes += request.bytes;
    m_hasRest = true;
}

/// Makes a row of each remainder. While there is no room for rows, the remainders are added up.
void RequestRows::closeSecond(qint64 next)
{
    std::unordered_map<quint64, Share> kept;
    for (const auto &[key, share] : m_shares) {
        if (share.rest == 0)
            continue;
        const auto protocol = static_cast<RequestEnd::Protocol>(key >> 32);
        if (m_rows.size() >= mostRows) {
            Share &sum = kept[keyOf(others, protocol)];
            sum.rest += share.rest;
            sum.restBytes += share.restBytes;
            continue;
        }
        LogRow row;
        row.request.time = m_second;
        row.request.protocol = protocol;
        row.request.peer = static_cast<quint32>(key);
        row.request.bytes = share.restBytes;
        row.several = share.rest;
        m_rows.push_back(row);
    }
    m_hasRest = !kept.empty();
    m_shares.swap(kept);
    m_second = next;
}

void RequestRows::take(std::vector<LogRow> &rows, qint64 now, bool all)
{
    rows.clear();
    rows.swap(m_rows);
    if (now != m_second || all)
        closeSecond(now);
    rows.insert(rows.end(), m_rows.begin(), m_rows.end());
    m_rows.clear();
}
