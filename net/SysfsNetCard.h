#pragma once

#include <QString>

/// True when the device behind class/net/<interfaceName> in the given sysfs tree sits on the PCI
/// bus, directly or as a virtio device whose parent does. False for names without a device.
bool isPciNetCard(const QString &interfaceName, const QString &sysfsRoot);
