#pragma once

#include <QString>

/// The calls by which a file is written, as each system has them. Any thread.
namespace FileCalls {

/// The system's own number of what went wrong; 0 is nothing.
using Error = quint32;
/// A file that is open for writing.
using Handle = qintptr;
constexpr Handle noFile = -1;

/// What an Error means to us.
enum class Fault {
    None,
    Exists,
    DiskFull,
    TooLarge,
    ReadOnly,
    Denied,
    NoFolder,
    IsFolder,
    InUse,
    DiskError,
    OtherDisk,
    Other,
};
Fault fault(Error error);

/// An error when something is there and is no file or may not be written.
Error checkWritable(const QString &path);
/// Creates a file that is not there yet and opens it. The same users may read and write it as
/// `like`, or, where that is missing, as any new file; with an empty `like` its owner alone.
Error create(const QString &path, const QString &like, Handle &file);
/// Lets the file's group read it as well, where the system has such a thing.
Error letGroupRead(Handle file);
/// Whether the folder hands its group on to what is made in it: its set-group-ID bit.
bool handsGroupOn(const QString &folder);
/// Opens a file to write behind its end, which is where `size` says; makes one for its owner alone
/// where there is none.
Error openToAdd(const QString &path, Handle &file, qint64 &size);
/// Takes away what stands behind `size`. Who wrote there goes on from here.
Error cut(Handle file, qint64 size);
/// Writes all of it.
Error write(Handle file, const char *bytes, qint64 count);
/// Waits until what was written is on the disk.
Error sync(Handle file);
Error close(Handle file);
/// Gives a file another name of the same disk, and with that the place of what has it, at a stroke.
/// Where the system cannot do so while somebody reads either one, tries again for a second.
Error replace(const QString &from, const QString &to);
/// Makes a folder for its owner alone, unless there is one.
Error makeFolder(const QString &path);
/// Waits until the folder's entries are on the disk, where the system has a call for that.
void syncFolder(const QString &path);
void remove(const QString &path);

} // namespace FileCalls
