#pragma once

#include <QFile>

/// What the file's access rights are, without those of this process.
inline QFile::Permissions filePermissions(const QString &path)
{
    const QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
#ifdef Q_OS_WIN
    // There the folder says who else may read; Qt reports everybody.
    return QFile::permissions(path) & owner;
#else
    return QFile::permissions(path) &
           (owner | QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
            QFile::WriteOther | QFile::ExeOther);
#endif
}
