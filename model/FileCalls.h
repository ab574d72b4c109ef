#pragma once

#include <QString>

/// The system's calls for writing files. Any thread.
namespace FileCalls {

/// The system's own error number; 0 is no error.
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

/// Returns an error when the path exists but is no file or may not be written.
Error checkWritable(const QString &path);
/// Creates a new file and opens it. The file gets the permissions of `like`; where `like` does not
/// exist, those of any new file; with an empty `like`, its owner alone may read and write it.
Error create(const QString &path, const QString &like, Handle &file);
/// Lets the file's group read it as well, on systems whose files have a group.
Error letGroupRead(Handle file);
/// Whether new files in the folder get the folder's group: its set-group-ID bit.
bool handsGroupOn(const QString &folder);
/// Opens a file for appending and sets `size` to its size. Creates a missing file, for its owner
/// alone.
Error openToAdd(const QString &path, Handle &file, qint64 &size);
/// Truncates the file to `size`. The next write continues there.
Error cut(Handle file, qint64 size);
/// Writes all `count` bytes.
Error write(Handle file, const char *bytes, qint64 count);
/// Waits until what was written is on the disk.
Error sync(Handle file);
Error close(Handle file);
/// Renames a file within one disk, and atomically replaces a file that has the new name. Where the
/// system refuses this while a program reads either file, retries for a second.
Error replace(const QString &from, const QString &to);
/// Makes a folder for its owner alone, unless the folder exists.
Error makeFolder(const QString &path);
/// Waits until the folder's entries are on the disk, where the system has a call for that.
void syncFolder(const QString &path);
void remove(const QString &path);

} // namespace FileCalls
