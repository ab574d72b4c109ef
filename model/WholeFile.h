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
    /// Why it failed, in the user's language and made to stand inside a sentence: "the disk is
    /// full". Empty after a success.
    QString reason() const { return m_reason; }

private:
    explicit WriteResult(const QString &reason)
        : m_reason(reason)
    {
    }

    QString m_reason;
};

/// What a new content has to outlast.
enum class Durability {
    Synced,   ///< the power being cut: it is on the disk when the write returns
    Replaced, ///< this program: for what can be made again, as this waits for no disk
};

/// Who may read the file afterwards.
enum class Readers {
    AsBefore,      ///< who could before; of a new file, who can read what this user makes
    OwnerOnly,     ///< for what holds passwords
    OwnerAndGroup, ///< the same in a folder that was set up for a group, see handsGroupOn()
};

/// Replaces a file's content: with all that was written, by commit(), or with nothing. It is
/// written to a file of its own beside the target, which takes the target's place once every byte
/// is known to have arrived. After a failure the target is as it was and the other file is gone.
///
/// A target that may not be written is refused, as replacing it would only take the folder's
/// consent; so is one that is no file, such as a device. Where the target is a link, what it leads
/// to is replaced. None of this goes for Durability::Replaced, which replaces whatever bears the
/// name.
///
/// Any thread, one at a time.
class WholeFile
{
    Q_DECLARE_TR_FUNCTIONS(WholeFile)
    Q_DISABLE_COPY_MOVE(WholeFile)

public:
    /// Stands between the target's name and a random rest in the name of the other file, which a
    /// program that is killed leaves behind.
    static constexpr char newFileMark[] = ".new-";

    WholeFile(const QString &filePath, Durability durability, Readers readers);
    /// Without a commit() nothing has happened.
    ~WholeFile();

    /// Adds to the content. False when this or anything before it failed; commit() tells why.
    bool write(const QByteArray &part);
    /// Ends the writing. To be called once.
    WriteResult commit();

    /// The sentence's part for an error of the system's calls.
    static QString reason(FileCalls::Error error);

private:
    bool took(FileCalls::Error error);
    void open(Readers readers);

    QString m_target;
    QString m_newFile; ///< empty when there is none
    FileCalls::Handle m_handle = FileCalls::noFile;
    FileCalls::Error m_error = 0; ///< the first
    Durability m_durability;
};

/// The whole content at once.
WriteResult writeWholeFile(const QString &filePath, const QByteArray &content,
                           Durability durability = Durability::Synced,
                           Readers readers = Readers::AsBefore);
/// The same with what `source` holds from its start on, which may be larger than the memory.
WriteResult writeWholeFile(const QString &filePath, QIODevice &source, Durability durability,
                           Readers readers);

/// Makes a folder for its owner alone, unless there is one of the name.
WriteResult makeOwnersFolder(const QString &path);

/// Gives a file another name, also on another disk; one that has the name already is replaced.
WriteResult moveFile(const QString &from, const QString &to);
