#pragma once

#include <QByteArray>
#include <QString>

/// The parts of a phone's SUBSCRIBE that the answers need.
struct PnPRequest
{
    /// The parts of a datagram, in the order in which they are read. The reading stops at the first
    /// missing one.
    enum Step {
        MacAddress,
        AddressAndPort,
        Branch,
        FromTag,
        CallId,
        Cseq,
        Event,
        Model,
        Complete,
    };

    /// The step that failed, or Complete. Fields of the steps before it are set.
    Step stoppedAt = MacAddress;

    QString macAddress;     ///< the 12 characters in front of the first "@"
    QString addressAndPort; ///< where the phone wants its answer, as the Via header says it
    QString address;        ///< the first part of it; the port is the second
    quint16 port = 0;
    QString branch;  ///< with "branch="
    QString fromTag; ///< with "tag="
    QString callId;
    QString cseq;
    QString event;
    QString model; ///< the model named in the event

    bool isComplete() const { return stoppedAt == Complete; }

    /// What the log says when the reading stops at `step`.
    static const char *failureText(Step step);

    /// Reads a datagram of any content and length, up to its first NUL. The method of the request
    /// line is not checked. Besides a missing part, two things stop the reading: a field that holds
    /// a CR or LF or is longer than 512 bytes, and an answer address that is not a single host's
    /// (no port, a port out of range, a name, a group's or a broadcast address).
    static PnPRequest parse(const QByteArray &datagram);
};
