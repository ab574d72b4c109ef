#include "app/InstanceNames.h"

#include <QStandardPaths>

#include <unistd.h>

namespace InstanceNames {

QString segment(const QString &key)
{
    return key + QLatin1Char('-') + QString::number(::getuid());
}

QString server(const QString &key)
{
    // Only the user can read this folder, unlike the folder for temporary files.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return folder.isEmpty() ? segment(key) : folder + QLatin1Char('/') + key;
}

} // namespace InstanceNames
