#include "net/FileLook.h"

#include <filesystem>
#include <system_error>

FileLook::FileLook(const QFile &file)
{
    std::error_code noTime;
    std::error_code noSize;
    const std::filesystem::path path(file.fileName().toStdU16String());
    time = std::filesystem::last_write_time(path, noTime).time_since_epoch().count();
    size = std::filesystem::file_size(path, noSize);
    isThere = !noTime && !noSize;
}
