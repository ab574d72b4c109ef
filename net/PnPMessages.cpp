#include "net/PnPMessages.h"

#include "model/PhoneFamily.h"
#include "net/PnPRequest.h"

#include <QStringList>

namespace {

const QString multicastGroup = QStringLiteral("224.0.1.75");
const QString userAgent = QStringLiteral("User-Agent: VlManager 1.0");
const QString allow = QStringLiteral("Allow: INVITE, ACK, OPTIONS, CANCEL, BYE, SUBSCRIBE, NOTIFY, "
                                     "INFO, REFER, UPDATE, MESSAGE");

QString message(const QStringList &lines, const QString &body = QString())
{
    const QString lineEnd = QStringLiteral("\r\n");
    return lines.join(lineEnd) + lineEnd + lineEnd + body;
}

/// A reply to the SUBSCRIBE. The `host` in From and To differs between the replies.
QString reply(const QString &status, const PnPRequest &request, const QString &host,
              const QString &toTag)
{
    const QString phone = QLatin1String("<sip:MAC%3A") + request.macAddress + QLatin1Char('@') +
                          host + QLatin1String(">;");
    return message({
        QLatin1String("SIP/2.0 ") + status,
        QLatin1String("Via: SIP/2.0/UDP ") + request.addressAndPort + QLatin1Char(';') +
            request.branch,
        QLatin1String("From: ") + phone + request.fromTag,
        QLatin1String("To: ") + phone + toTag,
        QLatin1String("Call-ID: ") + request.callId,
        QLatin1String("CSeq: ") + request.cseq,
        QLatin1String("Event: ") + request.event,
        QStringLiteral("Supported: replaces, path, eventlist"),
        userAgent,
        allow,
        QStringLiteral("Content-Length: 0"),
    });
}

} // namespace

QString PnPMessages::notImplemented(const PnPRequest &request, const QString &localAddress)
{
    return reply(QStringLiteral("501 Not Implemented"), request, localAddress,
                 QStringLiteral("tag=1882999294"));
}

QString PnPMessages::accepted(const PnPRequest &request)
{
    return reply(QStringLiteral("202 Accepted subscription"), request, multicastGroup,
                 QStringLiteral("tag=920204859"));
}

QString PnPMessages::notify(const PnPRequest &request, const QString &localAddress,
                            const QString &httpdUrl)
{
    const QString local = localAddress + QLatin1Char(':') + QString::number(replyPort);
    const QString url = httpdUrl + urlEnd(request.model);
    return message(
        {
            QLatin1String("NOTIFY sip:") + request.addressAndPort + QLatin1String(" SIP/2.0"),
            QLatin1String("Via: SIP/2.0/UDP ") + local +
                QLatin1String(";branch=z9hG4bK1168558332;rport"),
            QLatin1String("From: <sip:") + local + QLatin1String(">;") + request.fromTag,
            QLatin1String("To: <sip:") + request.addressAndPort + QLatin1Char('>'),
            QStringLiteral("Call-ID: 815617134-5080-1@vlmanager"),
            QStringLiteral("CSeq: 10 NOTIFY"),
            QLatin1String("Contact: <sip:") + local + QLatin1Char('>'),
            QStringLiteral("Max-Forwards: 70"),
            userAgent,
            QStringLiteral("Event: ua-profile"),
            QStringLiteral("Content-Type: application/url"),
            allow,
            QLatin1String("Content-Length:    ") + QString::number(url.size()),
        },
        url);
}
