#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

/// A phone's request, and what identifies the right document.
struct LoadRequest
{
    QByteArray bytes;
    QByteArray mark; ///< occurs only in this phone's document
    int host = 0;    ///< the phone's address is 127.0.0.0 plus this; 0: the system chooses
};

struct LoadResult
{
    qint64 answers = 0; ///< whole and correct
    qint64 faults = 0;  ///< cut off, wrong or missing
    double seconds = 0;
    double longest = 0; ///< from the connection to the end of the slowest answer, in seconds

    double perSecond() const { return static_cast<double>(answers) / seconds; }
};

/// Plays phones against a server on this machine: `atOnce` of them at any time, each on a
/// connection of its own, in two threads that wait for many sockets each. Repeats the requests for
/// `seconds`; with 0, sends each once.
LoadResult playPhones(std::uint16_t port, const std::vector<LoadRequest> &requests, int atOnce,
                      double seconds = 0);

/// Opens connections that send nothing, and keeps them until it is destroyed. Does not reopen
/// connections that the server has closed.
class IdleConnections
{
public:
    /// Opens the connections from eight hosts.
    IdleConnections(std::uint16_t port, int count);
    /// How many connections the server has not closed.
    int standing() const;
    ~IdleConnections();
    IdleConnections(const IdleConnections &) = delete;
    IdleConnections &operator=(const IdleConnections &) = delete;

private:
    std::vector<int> m_sockets;
};
