#pragma once

#include <QCoreApplication>
#include <QString>

/// How a phone's request ended. Each outcome has a word in the request log; see word().
enum class RequestOutcome : quint8 {
    // An HTTP request, or a connection that brought none.
    Sent,        ///< the whole answer was handed to the network
    GaveUp,      ///< the phone left, or took too long, before it had the whole answer
    NotListed,   ///< no device in the list has the MAC
    NotWritten,  ///< the document could not be written or read
    RefusedName, ///< the name could lead out of the documents' folder
    NoName,      ///< no name, or one that no document has
    NoRequest,   ///< nothing came on the connection
    TurnedAway,  ///< the phone's address had too many connections waiting
    Dropped,     ///< the connection was dropped to make room for others
    Closed,      ///< the service was closed meanwhile
    // A SUBSCRIBE; NotListed is one of these as well.
    Accepted,   ///< the phone was told where its document is
    Malformed,  ///< something that the answer needs is missing
    Repeated,   ///< a later one of the same sender came with it and counts instead
    FarAddress, ///< the answer would go to another network
    OwnAddress, ///< the answer would come back, or go to a whole network
    TooBrief,   ///< the answer would be far longer than the request
    TooMany,    ///< answered too often already
    NotSent,    ///< the network took no answer
};

/// A phone's request that has ended.
struct RequestEnd
{
    Q_DECLARE_TR_FUNCTIONS(RequestEnd)

public:
    enum class Protocol : quint8 { Http, Sip };

    qint64 time = 0;  ///< in seconds since 1970
    QString asked;    ///< the file's name or, by SIP, the MAC; as the phone sent it
    QString product;  ///< the product or, by SIP, the model; as the phone sent it
    QString mac;      ///< whose document was asked for; empty when no document was
    qint64 bytes = 0; ///< sent to the phone, headers included
    quint32 peer = 0; ///< the phone's IPv4 address
    Protocol protocol = Protocol::Http;
    RequestOutcome outcome = RequestOutcome::Dropped;

    /// The present time, in seconds since 1970.
    static qint64 now();

    /// The outcome in the request log's fixed vocabulary; English.
    static const char *word(RequestOutcome outcome);
    /// The outcome for the user, made to stand inside a sentence. `bytes` were sent.
    static QString text(RequestOutcome outcome, qint64 bytes);
    /// Who asked, when, and how it ended; for the user, in one line.
    QString line() const;

    /// "192.168.10.23".
    static QString addressText(quint32 peer);
    /// The local time of day, after the date unless that is today.
    static QString timeText(qint64 time);
};
