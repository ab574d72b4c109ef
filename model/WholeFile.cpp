#include "model/WholeFile.h"

#include <QFile>
#include <QSaveFile>

namespace {

/// Opening it tells, whatever the system goes by; asking for the permissions does not.
bool isReadOnly(const QString &filePath)
{
    QFile file(filePath);
    return file.exists() && !file.open(QIODevice::ReadWrite);
}

} // namespace

bool writeWholeFile(const QString &filePath, const QByteArray &content, QIODevice::OpenMode mode)
{
    if (isReadOnly(filePath))
        return false;
    QSaveFile file(filePath);
    if (!file.open(mode))
        return false;
    file.write(content); // a short write makes the commit fail
    return file.commit();
}
