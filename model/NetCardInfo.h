#pragma once

#include <QString>
#include <QStringList>

/// One network card of this machine, as the card chooser shows it.
struct NetCardInfo
{
    QString name; ///< the human-readable name
    bool isPhysical = false;
    QStringList ipList; ///< IPv4 addresses other than loopback, in the system's order
};
