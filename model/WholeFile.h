#pragma once

#include "model/FileCalls.h"

#include <QCoreApplication>
#include <QString>

class QByteArray;
class QIODevice;

/// How the writing of a file ended.
class [[nodiscard]] WriteResult
{
public:
    /// A success.
    WriteResult() = default;
    /// A failure; `reason` is not empty.
    static WriteResult failed(const QString &reason) { return WriteResult(reason); }

    explicit operator bool() const { return m_reason.isEmpty(); }
    /// Why it failed, in the user's language, as a part of a sentence: "the disk is full". Empty
    /// after a success.
    QString reason() const { return m_reason; }

private:
    explicit WriteResult(const QString &reason)
        : m_reason(reason)
    {
    }

    QString m_reason;
};

/// What the new content survives.
enum class Durability {
    Synced,   ///< a power failure: it is on the disk when the write returns
    Replaced, ///< the end of the program: for files that can be made again; waits for no disk
};

/// Who may read the file afterwards.
enum class Readers {
    AsBefore,      ///< the same users as before; of a new file, those of any file of this user
    OwnerOnly,     ///< for files that hold passwords
    OwnerAndGroup, ///< the same in a folder that was set up for a group, see handsGroupOn()
};

/// Replaces a file's content as a whole, in commit(), or not at all. The new content goes to a new
/// file beside the target, which takes the target's place once every byte is known to have arrived.
/// After a failure the target is unchanged and the new file is gone.
///
/// A write-protected target is refused, although replacing it needs only the folder's permission.
/// So is a target that is no file, such as a device. Where the target is a link, the file that it
/// leads to is replaced. Durability::Replaced does none of this: it replaces whatever has the name.
///
/// Any thread, one at a time.
class WholeFile
{
    Q_DECLARE_TR_FUNCTIONS(WholeFile)
    Q_DISABLE_COPY_MOVE(WholeFile)

public:
    /// Stands between the target's name and a random part in the name of the new file. A program
    /// that is killed leaves that file behind.
    static constexpr char newFileMark[] = ".new-";

    WholeFile(const QString &filePath, Durability durability, Readers readers);
    /// Without a commit() the target is unchanged.
    ~WholeFile();

    /// Adds to the content. False when this or an earlier call failed; commit() tells why.
    bool write(const QByteArray &part);
    /// Ends the writing. To be called once.
    WriteResult commit();

    /// The error as WriteResult::reason() words it.
    static QString reason(FileCalls::Error error);

private:
    bool took(FileCalls::Error error);
    void open(Readers readers);

    QString m_target;
    QString m_newFile; ///< empty when there is none
    FileCalls::Handle m_handle = FileCalls::noFile;
    FileCalls::Error m_error = 0; ///< the first one
    Durability m_durability;
};

/// Replaces the file's content by `content`.
WriteResult writeWholeFile(const QString &filePath, const QByteArray &content,
                           Durability durability = Durability::Synced,
                           Readers readers = Readers::AsBefore);
/// The same with the content of `source` from its start, which may be larger than the memory.
WriteResult writeWholeFile(const QString &filePath, QIODevice &source, Durability durability,
                           Readers readers);

/// Makes a folder for its owner alone, unless the folder exists.
WriteResult makeOwnersFolder(const QString &path);

/// Moves a file to another name, also on another disk. Replaces a file that has that name.
WriteResult moveFile(const QString &from, const QString &to);
