#pragma once

#include <QHash>
#include <QHostAddress>
#include <QList>
#include <QNetworkAddressEntry>

#include <chrono>

/// Decides who may be answered, and how often, so that a forged request can neither flood a host
/// nor reach into other networks. It opens no socket and reads no clock: the caller supplies the
/// networks and the time.
///
/// An address gets 200 datagrams at once and 20 a second after that. All addresses together get 200
/// at once and 200 a second, so in no second more than 400. A request counts for the address that
/// gets the answer and for its sender, who may name a neighbour in it. Half of an address's
/// datagrams are kept for its own requests, so that no other sender can use up its answers.
class PnPGuard
{
public:
    using Time = std::chrono::milliseconds;

    enum Verdict {
        Allowed,
        ComesBack,    ///< the server itself would hear the answer, or a whole network would
        OtherNetwork, ///< neither the sender's own address nor one in a network of this PC
        TooLong,      ///< far longer than the request
        TooOften,
    };

    /// A request and the answer that it would get.
    struct Exchange
    {
        QHostAddress sender;  ///< where the request came from
        QHostAddress address; ///< where the answer is to go; a single host
        quint16 port = 0;
        int requestSize = 0; ///< in bytes
        int answerSize = 0;  ///< in bytes, all datagrams together
        int datagrams = 0;
    };

    /// What the log says when no answer is sent.
    static const char *refusalText(Verdict verdict);

    /// This PC's own addresses, each with the network that it is in.
    void setNetworks(const QList<QNetworkAddressEntry> &ownAddresses);

    /// Whether the answer may be sent. Counts it when it is allowed. `now` never goes back.
    Verdict judge(const Exchange &exchange, Time now);

private:
    bool comesBack(const QHostAddress &address, quint16 port) const;
    bool isNear(const QHostAddress &sender, const QHostAddress &address) const;
    bool spend(const Exchange &exchange, Time now);

    QList<QNetworkAddressEntry> m_ownAddresses;
    // Token buckets, each kept as the time when it is full again. A missing address has a full
    // bucket.
    Time m_fullAt = Time::zero();
    QHash<quint32, Time> m_addressFullAt;
};
