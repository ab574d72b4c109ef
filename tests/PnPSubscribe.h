#pragma once

#include <QByteArray>

/// A SUBSCRIBE as a telephone out of the box sends it. `answerAddress` is "host:port".
inline QByteArray pnpSubscribe(const QByteArray &mac, const QByteArray &answerAddress,
                               const QByteArray &model)
{
    return "SUBSCRIBE sip:MAC%3A" + mac +
           "@224.0.1.75 SIP/2.0\r\n"
           "Via: SIP/2.0/UDP " +
           answerAddress +
           ";branch=z9hG4bK770412\r\n"
           "From: <sip:MAC%3A" +
           mac +
           "@224.0.1.75>;tag=5150\r\n"
           "To: <sip:MAC%3A" +
           mac +
           "@224.0.1.75>\r\n"
           "Call-ID: 88200314-" +
           mac +
           "@phone\r\n"
           "CSeq: 2001 SUBSCRIBE\r\n"
           "Contact: <sip:MAC%3A" +
           mac + "@" + answerAddress +
           ">\r\n"
           "Max-Forwards: 70\r\n"
           "User-Agent: Phone 1.0\r\n"
           "Expires: 0\r\n"
           "Event: ua-profile;profile-type=\"device\";vendor=\"phone\";model=\"" +
           model +
           "\";version=\"1.0\"\r\n"
           "Accept: application/url\r\n"
           "Content-Length: 0\r\n"
           "\r\n";
}
