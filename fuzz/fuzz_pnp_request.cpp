// Reads any bytes as a phone's SUBSCRIBE. The parts read from it must not break the lines of the
// answers, and answers that the guard allows must not exceed its limit of length.
#include "fuzz/FuzzTarget.h"
#include "net/PnPGuard.h"
#include "net/PnPMessages.h"
#include "net/PnPRequest.h"

#include <QByteArray>

#include <algorithm>

namespace {

const QString local = QStringLiteral("192.168.10.1");

/// True if a message has this many lines before its body, and a body of the stated length.
bool isSound(const QByteArray &message, int lineCount)
{
    const int end = message.indexOf("\r\n\r\n");
    const int label = message.lastIndexOf("Content-Length:", end);
    const int length = message.mid(label + 15, message.indexOf('\r', label) - label - 15).toInt();
    const QByteArray head = message.left(end);
    return end > 0 && head.count("\r\n") == lineCount - 1 && head.count('\r') == lineCount - 1 &&
           head.count('\n') == lineCount - 1 && length == message.size() - end - 4;
}

PnPGuard::Verdict judge(const PnPRequest &request, int requestSize, int answerSize)
{
    QNetworkAddressEntry own;
    own.setIp(QHostAddress(local));
    own.setPrefixLength(24);
    PnPGuard guard;
    guard.setNetworks({own});
    PnPGuard::Exchange exchange;
    exchange.sender = QHostAddress(request.address);
    exchange.address = exchange.sender;
    exchange.port = request.port;
    exchange.requestSize = requestSize;
    exchange.answerSize = answerSize;
    exchange.datagrams = 2;
    return guard.judge(exchange, {});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray datagram(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const PnPRequest request = PnPRequest::parse(datagram);
    if (!request.isComplete())
        return 0;

    const QHostAddress address(request.address);
    require(request.macAddress.size() == 12 && request.port > 0);
    require(address.protocol() == QAbstractSocket::IPv4Protocol && !address.isMulticast() &&
            !address.isBroadcast() && address != QHostAddress(QHostAddress::AnyIPv4));
    const QByteArray accepted = PnPMessages::accepted(request).toUtf8();
    const QByteArray notify =
        PnPMessages::notify(request, local, QStringLiteral("http://192.168.10.1:80")).toUtf8();
    require(isSound(PnPMessages::notImplemented(request, local).toUtf8(), 11));
    require(isSound(accepted, 11));
    require(isSound(notify, 13));

    const int answerSize = accepted.size() + notify.size();
    if (judge(request, datagram.size(), answerSize) == PnPGuard::Allowed)
        require(answerSize <= std::max(3 * datagram.size(), 1100));
    return 0;
}
