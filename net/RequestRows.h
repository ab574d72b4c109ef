#pragma once

#include "model/RequestEnd.h"

#include <QtGlobal>

#include <unordered_map>
#include <vector>

/// A row of the request log: for one request, or for several that got no row of their own.
struct LogRow
{
    RequestEnd request;  ///< of several: their second, address (0 for many) and bytes
    quint64 several = 0; ///< how many; 0 when the row is a request's own

    quint64 requests() const { return several == 0 ? 1 : several; }
};

/// Gathers the rows of the request log, so that no flood makes it grow without bound: an address
/// gets a limited number of rows in a second, and one row for the remaining requests of that
/// second. The rows' requests() always add up to the number of requests added.
///
/// Any thread, one at a time.
class RequestRows
{
public:
    static constexpr int rowsOfOne = 50;   ///< of an address, in a second
    static constexpr int addresses = 4096; ///< told apart in a second
    static constexpr int mostRows = 20000; ///< kept until they are taken

    void add(const RequestEnd &request);

    /// Replaces `rows` by the gathered rows. The remainder of a second is included when that second
    /// has passed by `now`, or when `all` is set.
    void take(std::vector<LogRow> &rows, qint64 now, bool all);
    /// True when there is nothing more to take.
    bool isEmpty() const { return m_rows.empty() && !m_hasRest; }

private:
    /// The requests of one address by one protocol.
    struct Share
    {
        int rows = 0;
        quint64 rest = 0;
        qint64 restBytes = 0;
    };

    void closeSecond(qint64 next);

    std::vector<LogRow> m_rows;
    qint64 m_second = 0;
    std::unordered_map<quint64, Share> m_shares; ///< in m_second
    bool m_hasRest = false;
};
