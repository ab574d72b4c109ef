#include "model/FileCalls.h"

#include <QFile>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FileCalls {

namespace {

constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
constexpr mode_t everybody = ownerOnly | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH; ///< less umask
constexpr mode_t permissionBits = S_IRWXU | S_IRWXG | S_IRWXO;

Error errorOf(int result)
{
    return result < 0 ? static_cast<Error>(errno) : 0;
}

int number(Handle file)
{
    return static_cast<int>(file);
}

/// Repeats a call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Some file systems have no sync and need none.
bool cannotSync(int error)
{
    return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

} // namespace

Fault fault(Error error)
{
    switch (error) {
    case 0:
        return Fault::None;
    case EEXIST:
        return Fault::Exists;
    case ENOSPC:
    case EDQUOT:
        return Fault::DiskFull;
    case EFBIG:
        return Fault::TooLarge;
    case EROFS:
        return Fault::ReadOnly;
    case EACCES:
    case EPERM:
        return Fault::Denied;
    case ENOENT:
    case ENOTDIR:
        return Fault::NoFolder;
    case EISDIR:
        return Fault::IsFolder;
    case ETXTBSY:
        return Fault::InUse;
    case EIO:
        return Fault::DiskError;
    case EXDEV:
        return Fault::OtherDisk;
    default:
        return Fault::Other;
    }
}

Error checkWritable(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat there = {};
    if (::stat(name.constData(), &there) != 0)
        return errno == ENOENT ? 0 : static_cast<Error>(errno);
    // A device or a pipe is not opened: opening one can have side effects.
    if (!S_ISREG(there.st_mode))
        return S_ISDIR(there.st_mode) ? EISDIR : EINVAL;
    const int file =
        uninterrupted([&name] { return ::open(name.constData(), O_WRONLY | O_CLOEXEC); });
    if (file < 0)
        return errorOf(file);
    ::close(file);
    return 0;
}

Error create(const QString &path, const QString &like, Handle &file)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat other = {};
    const bool copies = !like.isEmpty() && ::stat(QFile::encodeName(like).constData(), &other) == 0;
    const mode_t mode = copies || like.isEmpty() ? ownerOnly : everybody;
    const int opened = uninterrupted([&name, mode] {
        return ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    });
    if (opened < 0)
        return errorOf(opened);
    // Where the file system keeps no permissions, there are none to copy.
    if (copies)
        ::fchmod(opened, other.st_mode & permissionBits);
    file = opened;
    return 0;
}

Error letGroupRead(Handle file)
{
    return errorOf(::fchmod(number(file), ownerOnly | S_IRGRP));
}

bool handsGroupOn(const QString &folder)
{
    struct stat there = {};
    return ::stat(QFile::encodeName(folder).constData(), &there) == 0 && S_ISDIR(there.st_mode) &&
           (there.st_mode & S_ISGID) != 0;
}

Error openToAdd(const QString &path, Handle &file, qint64 &size)
{
    const QByteArray name = QFile::encodeName(path);
    // Without waiting: opening a pipe of that name would block until somebody reads from it.
    const int opened = uninterrupted([&name] {
        return ::open(name.constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK,
                      ownerOnly);
    });
    if (opened < 0)
        return errorOf(opened);
    struct stat there = {};
    if (::fstat(opened, &there) != 0 || !S_ISREG(there.st_mode)) {
        ::close(opened);
        return EINVAL;
    }
    file = opened;
    size = there.st_size;
    return 0;
}

Error cut(Handle file, qint64 size)
{
    return errorOf(::ftruncate(number(file), size));
}

Error write(Handle file, const char *bytes, qint64 count)
{
    while (count > 0) {
        const ssize_t written = uninterrupted([file, bytes, count] {
            return ::write(number(file), bytes, static_cast<size_t>(count));
        });
        if (written < 0)
            return static_cast<Error>(errno);
        bytes += written;
        count -= written;
    }
    return 0;
}

Error sync(Handle file)
{
    const int result = uninterrupted([file] { return ::fsync(number(file)); });
    return result < 0 && cannotSync(errno) ? 0 : errorOf(result);
}

Error close(Handle file)
{
    const int result = ::close(number(file));
    return result < 0 && errno == EINTR ? 0 : errorOf(result); // also closed on EINTR
}

Error replace(const QString &from, const QString &to)
{
    return errorOf(
        std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()));
}

Error makeFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat there = {};
    if (::stat(name.constData(), &there) == 0)
        return S_ISDIR(there.st_mode) ? 0 : static_cast<Error>(ENOTDIR);
    return errorOf(::mkdir(name.constData(), S_IRWXU));
}

void syncFolder(const QString &path)
{
    const int folder =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
}

void remove(const QString &path)
{
    ::unlink(QFile::encodeName(path).constData());
}

} // namespace FileCalls
