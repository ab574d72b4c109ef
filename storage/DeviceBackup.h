#pragma once

#include "model/ContactInfo.h"
#include "model/WholeFile.h"

#include <QIODevice>
#include <QStringList>

#include <memory>

/// Keeps what a change is about to drop, in the "backup" folder: device lists, in the form that the
/// import reads, and databases. Only the owner of the process can read them, as they hold
/// passwords.
///
/// Contents that a backup already holds, but for a database with journals, are not written again:
/// that backup becomes the newest of its kind. A failure sets errorText(), in the user's language,
/// and leaves no unfinished file.
class DeviceBackup
{
public:
    static inline const QString folderName = QStringLiteral("backup");

    /// The folder is in `directory`, which ends in "/".
    explicit DeviceBackup(const QString &directory);

    /// Writes the devices to a new file named after the present time, and removes all but the
    /// newest 30. False when the file is not safely on disk.
    bool write(const QList<ContactInfo> &devices);

    /// Writes a backup in steps, unless a file of its kind has the same contents. The last step
    /// waits for the disk.
    class Writing;
    /// write() in steps, for a text made of titleRow() and row(). `csv` must outlive the writing.
    std::unique_ptr<Writing> writing(QByteArray &csv);

    /// Copies a database, with its journal files if any, to a new file named after it and the
    /// present time, and removes all but the newest 10 copies. False when the copy is not safely on
    /// disk.
    ///
    /// The caller keeps other writers off by a read transaction, which has to end right after. A
    /// writing one will not do: on some systems this process loses its locks on a file as soon as
    /// it closes any descriptor of that file.
    bool copyDatabase(const QString &filePath);

    /// Moves an unreadable database, with its journal files if any, to the backups, as
    /// "<name>-unreadable-" and the present time. It is never removed there. A missing database is
    /// no failure. After a failure, every file is where it was.
    bool putAside(const QString &filePath);

    QString errorText() const { return m_errorText; }
    /// The backup that the last successful write() or copyDatabase() made or found.
    QString lastPath() const { return m_lastPath; }

    /// The contents of a backup: the English title row and a row for each device. Unlike an
    /// export's, a field with a comma or a quote is quoted, so that the import restores it. A blank
    /// replaces line breaks, which the import cannot read; zero characters are left out.
    static QByteArray csv(const QList<ContactInfo> &devices);
    static QByteArray titleRow();
    static QByteArray row(const ContactInfo &device);

private:
    /// Files with names of one form, of which the newest `kept` are kept.
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

    /// `backup` must outlive this object; its errorText() tells why a step failed.
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
    QStringList m_names; ///< files not compared yet
    QString m_path;
    std::unique_ptr<WholeFile> m_file;
};
