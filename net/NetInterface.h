#pragma once

#include "model/NetCardInfo.h"

#include <QHostAddress>
#include <QList>

/// One network interface as the system reports it.
struct NetInterface
{
    QString humanReadableName;
    bool isPhysical = false;
    QList<QHostAddress> addresses;
};

/// This machine's interfaces in the system's order.
QList<NetInterface> systemNetInterfaces();

/// The cards to choose from: physical ones first, in reverse order, then the virtual ones in
/// order. Loopback interfaces are left out; cards without an IPv4 address stay.
QList<NetCardInfo> netCards(const QList<NetInterface> &interfaces);
