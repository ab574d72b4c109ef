#include "net/PhysicalNetCard.h"

#include "net/SysfsNetCard.h"

bool isPhysicalNetCard(const QString &interfaceName)
{
    return isPciNetCard(interfaceName, QStringLiteral("/sys"));
}
