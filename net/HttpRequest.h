#pragma once

#include <QString>

/// What a phone asks for, gathered line by line from its request. Knows nothing of sockets.
struct HttpRequest
{
    QString fileName; ///< empty until a request line has been seen
    QString product;  ///< model word of the User-Agent line, or of a "?pro=" request line
    QString mac;      ///< set only by a request line with "cfg" + MAC + "." and no "?pro="
    QString target;   ///< the target of a request line with a "?pro=" or without a file name

    /// Takes one line, with or without its line end. Only request lines ("GET") and the User-Agent
    /// line count; a later line overwrites what an earlier one said.
    void addLine(const QString &line);

    /// True when the request names a provisioning document: only such requests are reported and
    /// answered.
    bool namesDocument() const;

    /// True when the file name can only mean a file directly in the served folder.
    bool hasSafeFileName() const;

private:
    void addQueryForm(const QString &line);
    void addPlainForm(const QString &line);
};
