#include "net/NetInterface.h"

#include "net/AdapterId.h"
#include "net/PhysicalNetCard.h"

#include <QNetworkInterface>

QList<NetInterface> systemNetInterfaces()
{
    QList<NetInterface> result;
    const QList<QNetworkInterface> all = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &interface : all) {
        NetInterface entry;
        entry.humanReadableName = interface.humanReadableName();
        entry.isPhysical = isPhysicalNetCard(adapterId(interface));
        const QList<QNetworkAddressEntry> addresses = interface.addressEntries();
        for (const QNetworkAddressEntry &address : addresses)
            entry.addresses.append(address.ip());
        result.append(entry);
    }
    return result;
}

QList<NetCardInfo> netCards(const QList<NetInterface> &interfaces)
{
    QList<NetCardInfo> cards;
    for (const NetInterface &interface : interfaces) {
        NetCardInfo card;
        card.name = interface.humanReadableName;
        card.isPhysical = interface.isPhysical;
        bool isLoopback = false;
        for (const QHostAddress &address : interface.addresses) {
            if (address == QHostAddress::LocalHost)
                isLoopback = true;
            else if (address.toIPv4Address() != 0)
                card.ipList.append(address.toString());
        }
        if (isLoopback)
            continue;
        if (card.isPhysical)
            cards.prepend(card);
        else
            cards.append(card);
    }
    return cards;
}
