#include "app/Console.h"

#include <cstdio>

#include <unistd.h>

namespace {

std::FILE *fileOf(Console::Stream stream)
{
    return stream == Console::Stream::Output ? stdout : stderr;
}

} // namespace

void Console::open()
{
    // Every program has the terminal from which it was started.
}

bool Console::isTerminal(Stream stream)
{
    return ::isatty(::fileno(fileOf(stream))) != 0;
}

void Console::write(Stream stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), fileOf(stream));
    std::fflush(fileOf(stream));
}
