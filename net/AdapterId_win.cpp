#include "net/AdapterId.h"

#include <QNetworkInterface>
#include <QUuid>

#include <winsock2.h>

#include <ws2ipdef.h>

#include <iphlpapi.h>

QString adapterId(const QNetworkInterface &card)
{
    // Qt's name looks like "ethernet_32769", which the registry does not know.
    NET_LUID number;
    GUID id;
    const std::wstring name = card.name().toStdWString();
    if (ConvertInterfaceNameToLuidW(name.c_str(), &number) != NO_ERROR ||
        ConvertInterfaceLuidToGuid(&number, &id) != NO_ERROR)
        return card.name();
    return QUuid(id).toString().toUpper();
}
