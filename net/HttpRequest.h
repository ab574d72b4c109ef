#pragma once

#include <QString>

/// What a telephone asks for, gathered line by line from its request. Knows nothing of sockets.
struct HttpRequest
{
    QString fileName; ///< empty until a request line has been seen
    QString product;  ///< model word of the User-Agent line, or of a "?pro=" request line
    QString mac;      ///< set by request lines that name "cfg" + MAC + ".xml" only
    QString target;   ///< what a request line asks for that has no file name or a "?pro="

    /// Takes in one line, with or without its line end. Request lines ("GET") and the User-Agent
    /// line count, all others are ignored; a later line overwrites what an earlier one said.
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
