#include "net/PhysicalNetCard.h"

#include <QDir>
#include <QSettings>

namespace {

const QLatin1String adapterClassKey("HKEY_LOCAL_MACHINE/SYSTEM/CurrentControlSet/Control/Class/"
                                    "{4D36E972-E325-11CE-BFC1-08002BE10318}/");

/// Cards registered under higher numbers count as virtual.
constexpr int adapterKeyCount = 12;

} // namespace

bool isPhysicalNetCard(const QString &interfaceName)
{
    for (int i = 0; i < adapterKeyCount; ++i) {
        const QString key = adapterClassKey + QStringLiteral("%1").arg(i, 4, 10, QLatin1Char('0'));
        const QSettings settings(QDir::toNativeSeparators(key), QSettings::NativeFormat);
        const QString instance = settings.value(QStringLiteral("NetCfgInstanceId")).toString();
        const QString device = settings.value(QStringLiteral("MatchingDeviceId")).toString();
        if (instance == interfaceName &&
            device.startsWith(QLatin1String("pci"), Qt::CaseInsensitive))
            return true;
    }
    return false;
}
