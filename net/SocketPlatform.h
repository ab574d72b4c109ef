#pragma once

#include <QtGlobal>

#include <chrono>
#include <cstdint>

class QHostAddress;
class QTcpServer;

/// The few socket operations that Qt does not offer. A descriptor is what
/// QAbstractSocket::socketDescriptor() gives; -1 stands for none.
namespace SocketPlatform {

/// A second descriptor for the same connection, or -1. The connection stays open until both are
/// closed. The caller closes it with close().
std::intptr_t duplicate(std::intptr_t descriptor);

/// Ends the connection, on Windows only its input, so that a thread that waits for it wakes up (but
/// see longestWait()).
void breakOff(std::intptr_t descriptor);

/// How many milliseconds a thread may wait for a connection before it checks whether the connection
/// was broken off: not every system wakes such a thread reliably.
int longestWait();

/// To be called before a connection is closed, when all is sent. Discards what has arrived; if
/// there was anything, tells the peer that nothing more will be sent, and discards further input
/// for up to a quarter of a second. Closing a connection with unread input resets it, and a reset
/// can overtake what was sent.
void endStream(std::intptr_t descriptor);

/// True once there is something to read, the end of the input or, on a listening descriptor, a
/// connection to accept; false when the time is over.
bool hasInput(std::intptr_t descriptor,
              std::chrono::milliseconds time = std::chrono::milliseconds(0));

/// Waits for something to read. False when the time is over or the input has ended: a peer that
/// sends nothing more may still wait for the answer.
bool waitForMoreInput(std::intptr_t descriptor, std::chrono::milliseconds time);

void close(std::intptr_t descriptor);

/// How an accept() ended.
enum class Accept {
    Done,
    NoneWaits,
    Refused, ///< the system lacks descriptors or memory
};

/// Accepts a connection, if one waits, from a listening descriptor that does not block. The new
/// descriptor is the caller's.
Accept accept(std::intptr_t listener, std::intptr_t &descriptor);

/// The IPv4 address at the connection's other end; 0 when there is none.
std::uint32_t peerAddress(std::intptr_t descriptor);

/// Listens as QTcpServer::listen() does, but only when the port is wholly free: fails when another
/// program has the port on any of the machine's addresses. No program can take the port from the
/// server afterwards. With port 0 the system chooses one.
///
/// Up to `backlog` connections wait to be accepted. Where the system can, it holds a connection
/// back until its client has sent something, for a second at most. Then no thread has to wait for
/// the beginning of a request.
bool listenAlone(QTcpServer &server, const QHostAddress &address, quint16 port, int backlog);

/// Raises this process's limit of open descriptors towards `wanted`, and returns the limit that
/// holds now. Never lowers it.
std::int64_t raiseDescriptorLimit(std::int64_t wanted);

/// True when the process could open this many more descriptors now.
bool canOpen(int count);

} // namespace SocketPlatform
