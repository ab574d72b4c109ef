#include "net/FileLook.h"

#include <sys/stat.h>

FileLook::FileLook(const QFile &file)
{
    constexpr std::int64_t nanoseconds = 1000000000;
    struct stat look
    {
    };
    isThere = fstat(file.handle(), &look) == 0;
    time = look.st_mtim.tv_sec * nanoseconds + look.st_mtim.tv_nsec;
    size = static_cast<std::uintmax_t>(look.st_size);
}
