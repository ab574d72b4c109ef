#include "net/PnPGuard.h"

#include "net/PnPMessages.h"

#include <algorithm>
#include <array>
#include <iterator>

using namespace std::chrono_literals;

namespace {

constexpr int burst = 200;
constexpr int burstForOthers = burst / 2;     ///< of the answers to an address that others name
constexpr PnPGuard::Time refillForOne = 50ms; // for each datagram
constexpr PnPGuard::Time refillForAll = 5ms;

/// Full buckets are dropped when the table gets this long. The limit for all keeps fewer than 600
/// others in it, most of which are full again after a tenth of a second.
constexpr int mostAddresses = 1024;

/// An answer is at most this many times as long as its request...
constexpr int growth = 3;
/// ...but may always have this length when the sender asks for itself: a brief request is far
/// shorter than the fixed lines of the answers.
constexpr int briefAnswer = 1100; // bytes

/// Whether a bucket has tokens for so many datagrams; a full bucket gives `usable` of them.
bool holds(PnPGuard::Time fullAt, PnPGuard::Time refill, int datagrams, PnPGuard::Time now,
           int usable = burst)
{
    return std::max(fullAt, now) + datagrams * refill <= now + usable * refill;
}

/// Whether `address` means every host in the network of `own`. Some systems still take the
/// network's own number for its broadcast address.
bool isBroadcast(const QHostAddress &address, const QNetworkAddressEntry &own)
{
    constexpr int smallestBroadcasting = 30; // longer prefixes have hosts only
    const quint32 hostBits = ~own.netmask().toIPv4Address();
    const quint32 host = address.toIPv4Address() & hostBits;
    return address == own.broadcast() ||
           ((host == 0 || host == hostBits) && own.prefixLength() <= smallestBroadcasting &&
            address.isInSubnet(own.ip(), own.prefixLength()));
}

bool isTooLong(const PnPGuard::Exchange &exchange)
{
    const int brief = exchange.sender == exchange.address ? briefAnswer : 0;
    return exchange.answerSize > std::max(growth * exchange.requestSize, brief);
}

} // namespace

const char *PnPGuard::refusalText(Verdict verdict)
{
    static constexpr std::array<const char *, TooOften + 1> texts = {
        "",
        "The answer would come back to this server.",
        "The answer would go to another network.",
        "The answer would be far longer than the request.",
        "Answered too often already.",
    };
    return texts.at(verdict);
}

void PnPGuard::setNetworks(const QList<QNetworkAddressEntry> &ownAddresses)
{
    m_ownAddresses = ownAddresses;
}

PnPGuard::Verdict PnPGuard::judge(const Exchange &exchange, Time now)
{
    if (comesBack(exchange.address, exchange.port))
        return ComesBack;
    if (!isNear(exchange.sender, exchange.address))
        return OtherNetwork;
    if (isTooLong(exchange))
        return TooLong;
    return spend(exchange, now) ? Allowed : TooOften;
}

/// Whether the answer would reach this server, which would take it for a request and answer again,
/// endlessly, or a whole network. No phone can have the server's address and port: they are taken.
bool PnPGuard::comesBack(const QHostAddress &address, quint16 port) const
{
    const bool isOwnPort = port == PnPMessages::requestPort;
    return (isOwnPort && address.isLoopback()) ||
           std::any_of(m_ownAddresses.begin(), m_ownAddresses.end(), [&](const auto &own) {
               return (isOwnPort && own.ip() == address) || isBroadcast(address, own);
           });
}

bool PnPGuard::isNear(const QHostAddress &sender, const QHostAddress &address) const
{
    if (address.isLoopback())
        return sender.isLoopback();
    return address == sender ||
           std::any_of(m_ownAddresses.begin(), m_ownAddresses.end(), [&](const auto &own) {
               return own.prefixLength() > 0 && address.isInSubnet(own.ip(), own.prefixLength());
           });
}

/// Takes the answer's datagrams out of every bucket that they count for, or out of none.
bool PnPGuard::spend(const Exchange &exchange, Time now)
{
    const quint32 sender = exchange.sender.toIPv4Address();
    const quint32 address = exchange.address.toIPv4Address();
    const auto has = [&](quint32 payer, int usable) {
        return holds(m_addressFullAt.value(payer), refillForOne, exchange.datagrams, now, usable);
    };
    const bool isAllowed = holds(m_fullAt, refillForAll, exchange.datagrams, now) &&
                           has(sender, burst) &&
                           has(address, sender == address ? burst : burstForOthers);
    if (!isAllowed)
        return false;

    if (m_addressFullAt.size() >= mostAddresses) {
        for (auto it = m_addressFullAt.begin(); it != m_addressFullAt.end();)
            it = it.value() <= now ? m_addressFullAt.erase(it) : std::next(it);
    }
    const auto take = [&](Time &fullAt, Time refill) {
        fullAt = std::max(fullAt, now) + exchange.datagrams * refill;
    };
    take(m_fullAt, refillForAll);
    take(m_addressFullAt[sender], refillForOne);
    if (sender != address)
        take(m_addressFullAt[address], refillForOne);
    return true;
}
