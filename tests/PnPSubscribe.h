#pragma once

#include <QByteArray>

/// A SUBSCRIBE as a phone out of the box sends it. `answerAddress` is "host:port".
inline QByteArray pnpSubscribe(const QByteArray &mac, const QByteArray &answerAddress,
                               const QByteArray &model)
{
    return QByteArray(R"(SUBSCRIBE sip:MAC%3A[mac]@224.0.1.75 SIP/2.0
Via: SIP/2.0/UDP [address];branch=z9hG4bK770412
From: <sip:MAC%3A[mac]@224.0.1.75>;tag=5150
To: <sip:MAC%3A[mac]@224.0.1.75>
Call-ID: 88200314-[mac]@phone
CSeq: 2001 SUBSCRIBE
Contact: <sip:MAC%3A[mac]@[address]>
Max-Forwards: 70
User-Agent: Phone 1.0
Expires: 0
Event: ua-profile;profile-type="device";vendor="phone";model="[model]";version="1.0"
Accept: application/url
Content-Length: 0

)")
        .replace("\n", "\r\n")
        .replace("[mac]", mac)
        .replace("[address]", answerAddress)
        .replace("[model]", model);
}
