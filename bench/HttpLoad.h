#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

/// What a telephone asks for, and what tells that it got the right document.
struct LoadRequest
{
    QByteArray bytes;
    QByteArray mark; ///< stands in this telephone's document alone
    int host = 0;    ///< the telephone's address is 127.0.0.0 and so many; 0: the system's choice
};

struct LoadResult
{
    qint64 answers = 0; ///< whole and right
    qint64 faults = 0;  ///< cut, wrong or none
    double seconds = 0;
    double longest = 0; ///< from the connection to the end of the slowest answer, in seconds

    double perSecond() const { return static_cast<double>(answers) / seconds; }
};

/// Plays telephones against a server on this machine: `atOnce` of them at any time, each on a
/// connection of its own, by two threads that wait for many sockets each. With `seconds`, the
/// requests over and over for so long; without, each once.
LoadResult playTelephones(std::uint16_t port, const std::vector<LoadRequest> &requests, int atOnce,
                          double seconds = 0);

/// Opens connections that say nothing, and keeps them until it is destroyed. Connections that the
/// server has closed are not opened again.
class IdleConnections
{
public:
    /// From eight hosts.
    IdleConnections(std::uint16_t port, int count);
    /// How many the other side has not closed.
    int standing() const;
    ~IdleConnections();
    IdleConnections(const IdleConnections &) = delete;
    IdleConnections &operator=(const IdleConnections &) = delete;

private:
    std::vector<int> m_sockets;
};
