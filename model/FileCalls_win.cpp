#include "model/FileCalls.h"

#include <QDir>

#include <windows.h>

#include <algorithm>
#include <string>

namespace FileCalls {

namespace {

constexpr qint64 largestWrite = qint64(1) << 30;
constexpr DWORD quotaExceeded = 1295; // ERROR_DISK_QUOTA_EXCEEDED, which not every header has

// A file cannot be replaced while a program reads it, which rarely takes long.
constexpr int replaceAttempts = 100;
constexpr DWORD replacePauseMs = 10;

Error lastErrorUnless(bool succeeded)
{
    return succeeded ? 0 : GetLastError();
}

/// The path in the form that the system's calls accept at any length.
std::wstring native(const QString &path)
{
    const QString whole =
        QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
    const QLatin1String network("\\\\");
    const QString prefix =
        whole.startsWith(network) ? QStringLiteral("\\\\?\\UNC") : QStringLiteral("\\\\?\\");
    return (prefix + (whole.startsWith(network) ? whole.mid(1) : whole)).toStdWString();
}

HANDLE handle(Handle file)
{
    return reinterpret_cast<HANDLE>(file);
}

bool isReadersDoing(DWORD error)
{
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
}

} // namespace

Fault fault(Error error)
{
    switch (error) {
    case ERROR_SUCCESS:
        return Fault::None;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return Fault::Exists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case quotaExceeded:
        return Fault::DiskFull;
    case ERROR_FILE_TOO_LARGE:
        return Fault::TooLarge;
    case ERROR_WRITE_PROTECT:
        return Fault::ReadOnly;
    case ERROR_ACCESS_DENIED:
        return Fault::Denied;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return Fault::NoFolder;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return Fault::InUse;
    case ERROR_NOT_SAME_DEVICE:
        return Fault::OtherDisk;
    case ERROR_CRC:
    case ERROR_IO_DEVICE:
        return Fault::DiskError;
    default:
        return Fault::Other;
    }
}

Error checkWritable(const QString &path)
{
    const HANDLE file = CreateFileW(native(path).c_str(), GENERIC_WRITE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND ? 0 : error;
    }
    CloseHandle(file);
    return 0;
}

/// The folder's permissions apply to the file; `like` is ignored.
Error create(const QString &path, const QString & /*like*/, Handle &file)
{
    const HANDLE opened = CreateFileW(native(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                      CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return GetLastError();
    file = reinterpret_cast<Handle>(opened);
    return 0;
}

Error letGroupRead(Handle /*file*/)
{
    return 0;
}

bool handsGroupOn(const QString & /*folder*/)
{
    return false;
}

/// The folder's permissions apply to a new file.
Error openToAdd(const QString &path, Handle &file, qint64 &size)
{
    const HANDLE opened =
        CreateFileW(native(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return GetLastError();
    LARGE_INTEGER end = {};
    if (!SetFilePointerEx(opened, {}, &end, FILE_END)) {
        const DWORD error = GetLastError();
        CloseHandle(opened);
        return error;
    }
    file = reinterpret_cast<Handle>(opened);
    size = end.QuadPart;
    return 0;
}

Error cut(Handle file, qint64 size)
{
    LARGE_INTEGER end = {};
    end.QuadPart = size;
    return lastErrorUnless(SetFilePointerEx(handle(file), end, nullptr, FILE_BEGIN) &&
                           SetEndOfFile(handle(file)));
}

Error write(Handle file, const char *bytes, qint64 count)
{
    while (count > 0) {
        DWORD written = 0;
        const auto part = static_cast<DWORD>(std::min(count, largestWrite));
        if (!WriteFile(handle(file), bytes, part, &written, nullptr))
            return GetLastError();
        if (written == 0)
            return ERROR_DISK_FULL;
        bytes += written;
        count -= written;
    }
    return 0;
}

Error sync(Handle file)
{
    return lastErrorUnless(FlushFileBuffers(handle(file)));
}

Error close(Handle file)
{
    return lastErrorUnless(CloseHandle(handle(file)));
}

Error replace(const QString &from, const QString &to)
{
    const std::wstring source = native(from);
    const std::wstring target = native(to);
    Error error = 0;
    for (int attempt = 0; attempt < replaceAttempts; ++attempt) {
        if (attempt > 0)
            Sleep(replacePauseMs);
        error =
            lastErrorUnless(MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING));
        if (!isReadersDoing(error))
            break;
    }
    return error;
}

Error makeFolder(const QString &path)
{
    const DWORD there = GetFileAttributesW(native(path).c_str());
    if (there != INVALID_FILE_ATTRIBUTES)
        return (there & FILE_ATTRIBUTE_DIRECTORY) != 0 ? 0 : ERROR_DIRECTORY;
    return lastErrorUnless(CreateDirectoryW(native(path).c_str(), nullptr));
}

void syncFolder(const QString & /*path*/) {}

void remove(const QString &path)
{
    DeleteFileW(native(path).c_str());
}

} // namespace FileCalls
