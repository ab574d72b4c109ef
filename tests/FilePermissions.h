#pragma once

#include <QFile>

/// The access rights of the file: the owner's, and what Qt reports of everybody else's.
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
