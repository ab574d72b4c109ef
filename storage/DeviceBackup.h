#pragma once

#include "model/ContactInfo.h"

#include <QString>

/// Keeps what an act is about to drop: device lists in the "backup" folder, in the form that the
/// import reads back. Only the owner of the process can read them, as they hold passwords.
class DeviceBackup
{
public:
    /// Backups go to `directory` (ending in "/") + "backup".
    explicit DeviceBackup(const QString &directory);

    /// Writes the devices to a new file named after the present time and removes the oldest ones
    /// beyond the newest 30. False, with errorText() set, when the file is not safely on disk.
    bool write(const QList<ContactInfo> &devices);

    /// Moves a file that cannot be read to the backups, named after the present time. A file that
    /// is not there is no failure. After one, errorText() is set and the file is where it was.
    bool putAside(const QString &filePath);

    QString errorText() const { return m_errorText; }
    /// The file that the last successful write() made.
    QString lastPath() const { return m_lastPath; }

    /// The contents of a backup: the English title row and a row a device. Unlike an export, a
    /// field that holds a comma or a quote is quoted, so that it comes back; of line breaks, which
    /// the import cannot read, a blank is left.
    static QByteArray csv(const QList<ContactInfo> &devices);

private:
    QString freePath(const QString &prefix, const QString &suffix) const;
    bool makeFolder() const;
    void removeOldest() const;

    QString m_folder;
    QString m_errorText;
    QString m_lastPath;
};
