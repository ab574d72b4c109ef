#include "net/SysfsNetCard.h"

#include <QFileInfo>

namespace {

/// "pci", "virtio", "usb", ...; empty when the folder is not a device.
QString subsystem(const QString &device)
{
    return QFileInfo(QFileInfo(device + QLatin1String("/subsystem")).canonicalFilePath())
        .fileName();
}

} // namespace

bool isPciNetCard(const QString &interfaceName, const QString &sysfsRoot)
{
    const QFileInfo link(sysfsRoot + QLatin1String("/class/net/") + interfaceName +
                         QLatin1String("/device"));
    const QString device = link.canonicalFilePath();
    if (device.isEmpty())
        return false;

    const QString bus = subsystem(device);
    return bus == QLatin1String("pci") ||
           (bus == QLatin1String("virtio") &&
            subsystem(QFileInfo(device).path()) == QLatin1String("pci"));
}
