#pragma once

#include "model/WholeFile.h"

#include <QString>

/// The file of the setting, in the program's folder, which is the working directory.
inline const QString httpdPortPath = QStringLiteral("port.xml");

/// Where the administrator wants the HTTP server to listen.
struct HttpdPort
{
    /// The port policy. The numbers are those of the file's "useDefault".
    enum class Policy {
        Custom = 0,
        Default = 1, ///< port 80
        NoPort,      ///< any other number: the service runs without a port
    };

    Policy policy = Policy::Default;
    int port = 80;    ///< the custom port as it was written, in range or not
    QString portText; ///< its text, empty unless it is a number
};

/// Reads the port setting from an XML file. Returns the default when the file is missing or cannot
/// be opened; of a damaged file, uses what stands before the damage.
HttpdPort readHttpdPort(const QString &path);

/// Writes the setting; replaces the file as a whole or not at all. `portText` is the custom port as
/// it was typed, possibly empty.
WriteResult writeHttpdPort(const QString &path, bool useDefault, const QString &portText);
