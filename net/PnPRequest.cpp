#include "net/PnPRequest.h"

#include <QHostAddress>
#include <QStringList>

#include <array>

namespace {

constexpr int macLength = 12;
constexpr int longestField = 512;
constexpr int maxPort = 65535;

const QLatin1String viaHeader("Via: SIP/2.0/UDP ");
const QLatin1String lineEnd("\r\n");

/// Keeps a text that was found. Refuses a null text, which was not found; one with a CR or LF,
/// which would break the lines of the answers; and a long one, which would swell them.
bool keep(const QString &text, QString &field)
{
    if (text.isNull() || text.size() > longestField || text.contains(QLatin1Char('\r')) ||
        text.contains(QLatin1Char('\n')))
        return false;
    field = text;
    return true;
}

/// The text from `start` to `end`, exclusive; null when `end` was not found.
QString slice(const QString &text, int start, int end)
{
    return end < 0 ? QString() : text.mid(start, end - start);
}

/// The rest of the line after the first `label`, or including it. Null when there is no such label
/// or the line does not end.
QString restOfLine(const QString &text, QLatin1String label, bool withLabel)
{
    const int found = text.indexOf(label);
    if (found < 0)
        return QString();
    const int start = withLabel ? found : found + label.size();
    return slice(text, start, text.indexOf(lineEnd, start));
}

bool readMacAddress(const QString &text, PnPRequest &request)
{
    const int at = text.indexOf(QLatin1Char('@'));
    return at >= macLength && keep(text.mid(at - macLength, macLength), request.macAddress);
}

/// Whether the text is the IPv4 address of a single host. A forged request names another one to
/// have the answer multiplied, or sent back to this server.
bool isHostAddress(const QString &text)
{
    constexpr quint32 firstNetwork = 1;
    constexpr quint32 lastNetwork = 223;
    const QHostAddress address(text);
    const quint32 network = address.toIPv4Address() >> 24;
    return address.protocol() == QAbstractSocket::IPv4Protocol && network >= firstNetwork &&
           network <= lastNetwork;
}

bool readAddressAndPort(const QString &text, PnPRequest &request)
{
    const int via = text.indexOf(viaHeader);
    if (via < 0)
        return false;
    const int start = via + viaHeader.size();
    const QString value = slice(text, start, text.indexOf(QLatin1Char(';'), start));
    const QStringList parts = value.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    if (parts.size() < 2)
        return false;
    const int port = parts.at(1).toInt();
    if (!isHostAddress(parts.at(0)) || port < 1 || port > maxPort ||
        !keep(value, request.addressAndPort))
        return false;
    request.address = parts.at(0);
    request.port = static_cast<quint16>(port);
    return true;
}

bool readModel(PnPRequest &request)
{
    const QLatin1String label("model=");
    const int found = request.event.indexOf(label);
    if (found < 0)
        return false;
    const int start = found + label.size() + 1; // after the opening quote
    return keep(slice(request.event, start, request.event.indexOf(QLatin1Char('"'), start)),
                request.model);
}

bool readText(const QString &text, const char *label, bool withLabel, QString &field)
{
    return keep(restOfLine(text, QLatin1String(label), withLabel), field);
}

bool readStep(PnPRequest::Step step, const QString &text, PnPRequest &request)
{
    switch (step) {
    case PnPRequest::MacAddress:
        return readMacAddress(text, request);
    case PnPRequest::AddressAndPort:
        return readAddressAndPort(text, request);
    case PnPRequest::Branch:
        return readText(text, "branch=", true, request.branch);
    case PnPRequest::FromTag:
        return readText(text, "tag=", true, request.fromTag);
    case PnPRequest::CallId:
        return readText(text, "Call-ID: ", false, request.callId);
    case PnPRequest::Cseq:
        return readText(text, "CSeq: ", false, request.cseq);
    case PnPRequest::Event:
        return readText(text, "Event: ", false, request.event);
    case PnPRequest::Model:
        return readModel(request);
    case PnPRequest::Complete:
        break;
    }
    return false;
}

} // namespace

const char *PnPRequest::failureText(Step step)
{
    static constexpr std::array<const char *, Complete> texts = {
        "Can not find requestor's Mac address.",
        "Can not find requestor's address and port.",
        "Can not find branch Tag.",
        "Can not find From Tag.",
        "Can not find Call ID.",
        "Can not find CSeq.",
        "Can not find Event.",
        "Can not find model in event str.",
    };
    return step < Complete ? texts.at(step) : "";
}

PnPRequest PnPRequest::parse(const QByteArray &datagram)
{
    // Through a C string, which ends at the first NUL.
    const QString text = QString::fromLatin1(datagram.constData());
    PnPRequest request;
    while (request.stoppedAt != Complete && readStep(request.stoppedAt, text, request))
        request.stoppedAt = static_cast<Step>(request.stoppedAt + 1);
    return request;
}
