#include "app/AutoStart.h"

#include <QDir>
#include <QSettings>
#include <QVariant>

#include <windows.h>

namespace AutoStart {

QString place()
{
    return QStringLiteral("HKEY_CURRENT_USER/SOFTWARE/Microsoft/Windows/CurrentVersion/Run");
}

WriteResult set(const QString &programPath, bool on)
{
    QSettings settings(QDir::toNativeSeparators(place()), QSettings::NativeFormat);
    // When switched off, the value stays in the key but names nothing.
    settings.setValue(QStringLiteral("VlManager"),
                      on ? QVariant(QDir::toNativeSeparators(programPath)) : QVariant());
    settings.sync();
    return settings.status() == QSettings::NoError
               ? WriteResult()
               : WriteResult::failed(WholeFile::reason(ERROR_ACCESS_DENIED));
}

} // namespace AutoStart
