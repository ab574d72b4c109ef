#pragma once

#include "model/ContactInfo.h"
#include "model/WholeFile.h"

#include <QIODevice>
#include <QStringList>

#include <memory>

/// Keeps what an act is about to drop: device lists in the "backup" folder, in the form that the
/// import reads back, and databases. Only the owner of the process can read them, as they hold
/// passwords.
///
/// What is kept already, byte for byte, is not written again: it counts as the newest of its kind.
/// After a failure errorText() is set, in the user's language, and nothing is left of the file.
class DeviceBackup
{
public:
    /// Backups go to `directory` (ending in "/") + "backup".
    explicit DeviceBackup(const QString &directory);

    /// Writes the devices to a new file named after the present time and removes the oldest ones
    /// beyond the newest 30. False when the file is not safely on disk.
    bool write(const QList<ContactInfo> &devices);

    /// Writes something to a new file, unless a file of the kind holds just that, in steps; the
    /// last one waits for the disk.
    class Writing;
    /// Writes a text made of titleRow() and row() as write() does. `csv` must outlive the writing.
    std::unique_ptr<Writing> writing(QByteArray &csv);

    /// Copies a database, with what its last writer may have left beside it, to a new file named
    /// after it and the present time, and removes the oldest copies beyond the newest 10. False
    /// when the copy is not safely on disk.
    ///
    /// Nobody may write the database meanwhile: a read transaction of the caller's keeps others
    /// off. It has to end right after, and must not be one that writes: on some systems the locks
    /// that this process has on the file are gone once any reader closes it.
    bool copyDatabase(const QString &filePath);

    /// Moves a database that cannot be read, with what its last writer may have left beside it, to
    /// the backups, as "<name>-unreadable-" and the present time; it is never removed there. A file
    /// that is not there is no failure. After one everything is where it was.
    bool putAside(const QString &filePath);

    QString errorText() const { return m_errorText; }
    /// The file that holds what the last successful write() or copyDatabase() was to keep.
    QString lastPath() const { return m_lastPath; }

    /// The contents of a backup: the English title row and a row a device. Unlike an export, a
    /// field that holds a comma or a quote is quoted, so that it comes back; of line breaks, which
    /// the import cannot read, a blank is left, and of zero characters nothing.
    static QByteArray csv(const QList<ContactInfo> &devices);
    static QByteArray titleRow();
    static QByteArray row(const ContactInfo &device);

private:
    /// Files that are called alike, and of which so many are kept.
    struct Kind
    {
        QString stem;
        QString suffix;
        int kept;
    };

    void settle(const QString &path, const Kind &kind);
    QStringList namesOf(const Kind &kind) const;
    QString freePath(const Kind &kind) const;
    bool makeFolder();
    bool took(const WriteResult &result);

    QString m_folder;
    QString m_errorText;
    QString m_lastPath;
};

class DeviceBackup::Writing
{
public:
    enum class Step { More, Done, Failed };

    /// `backup` must outlive this object; it has the reason of a failure.
    Writing(DeviceBackup &backup, std::unique_ptr<QIODevice> content, const Kind &kind);

    Step step();

private:
    enum class Phase { Comparing, Writing, Ending };

    Step compare();
    Step write();
    Step end();

    DeviceBackup &m_backup;
    std::unique_ptr<QIODevice> m_content;
    Kind m_kind;
    Phase m_phase = Phase::Comparing;
    QStringList m_names; ///< that were not compared yet
    QString m_path;
    std::unique_ptr<WholeFile> m_file;
};
