#pragma once

#include <QCoreApplication>
#include <QString>

/// How a telephone's request ended. Each has a word in the request log; see word().
enum class RequestOutcome : quint8 {
    // An HTTP request, or a connection that brought none.
    Sent,        ///< the whole answer was handed to the network
    GaveUp,      ///< the telephone left, or took too long, before it had the whole answer
    NotListed,   ///< no device of the list has the MAC
    NotWritten,  ///< the document could not be written or read
    RefusedName, ///< the name could mean something outside the folder of the documents
    NoName,      ///< no name, or none of a document
    NoRequest,   ///< nothing came on the connection
    TurnedAway,  ///< the telephone's address had too many connections waiting
    Dropped,     ///< it made room for others
    Closed,      ///< the service was closed meanwhile
    // A SUBSCRIBE; NotListed is one of these as well.
    Accepted,   ///< the telephone was told where its document is
    Malformed,  ///< something that the answer needs is missing
    Repeated,   ///< another one of the same telephone came with it, which counts
    FarAddress, ///< the answer would go to another network
    OwnAddress, ///< the answer would come back, or go to a whole network
    TooBrief,   ///< the answer would be far longer
    TooMany,    ///< answered too often already
    NotSent,    ///< the network took no answer
};

/// A telephone's request that is over.
struct RequestEnd
{
    Q_DECLARE_TR_FUNCTIONS(RequestEnd)

public:
    enum class Protocol : quint8 { Http, Sip };

    qint64 time = 0;  ///< in seconds since 1970
    QString asked;    ///< the file's name or, by SIP, the MAC; as the telephone sent it
    QString product;  ///< the product or, by SIP, the model; as the telephone sent it
    QString mac;      ///< whose document was asked for; empty when no document was
    qint64 bytes = 0; ///< sent to the telephone, headers included
    quint32 peer = 0; ///< its IPv4 address
    Protocol protocol = Protocol::Http;
    RequestOutcome outcome = RequestOutcome::Dropped;

    /// One ends now.
    static qint64 now();

    /// The outcome in the request log's fixed vocabulary; English.
    static const char *word(RequestOutcome outcome);
    /// The outcome for the user, made to stand inside a sentence. `bytes` were sent.
    static QString text(RequestOutcome outcome, qint64 bytes);
    /// Who asked, when, and how it ended; for the user, in one line.
    QString line() const;

    /// "192.168.10.23".
    static QString addressText(quint32 peer);
    /// The local time of day; with the date unless it is today's.
    static QString timeText(qint64 time);
};
