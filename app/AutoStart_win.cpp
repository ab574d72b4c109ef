#include "app/AutoStart.h"

#include <QDir>
#include <QSettings>
#include <QVariant>

namespace AutoStart {

QString place()
{
    return QStringLiteral("HKEY_CURRENT_USER/SOFTWARE/Microsoft/Windows/CurrentVersion/Run");
}

void set(const QString &programPath, bool on)
{
    QSettings settings(QDir::toNativeSeparators(place()), QSettings::NativeFormat);
    // The value stays in the key and then names nothing.
    settings.setValue(QStringLiteral("VlManager"),
                      on ? QVariant(QDir::toNativeSeparators(programPath)) : QVariant());
}

} // namespace AutoStart
