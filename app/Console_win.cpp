#include "app/Console.h"

#include <windows.h>

#include <string>

namespace {

HANDLE handleOf(Console::Stream stream)
{
    return GetStdHandle(stream == Console::Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

/// Connects the stream to the console, unless it was redirected when the program was started.
void useConsole(DWORD stream)
{
    const HANDLE given = GetStdHandle(stream);
    if (given != nullptr && given != INVALID_HANDLE_VALUE)
        return;
    // Kept open until the program ends.
    const HANDLE console =
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (console != INVALID_HANDLE_VALUE)
        SetStdHandle(stream, console);
}

} // namespace

void Console::open()
{
    // A windowed program has no console, not even if it is started from one.
    if (!AttachConsole(ATTACH_PARENT_PROCESS))
        return;
    useConsole(STD_OUTPUT_HANDLE);
    useConsole(STD_ERROR_HANDLE);
}

bool Console::isTerminal(Stream stream)
{
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0;
}

void Console::write(Stream stream, const QString &text)
{
    DWORD written = 0;
    if (isTerminal(stream)) {
        const std::wstring wide = text.toStdWString();
        WriteConsoleW(handleOf(stream), wide.c_str(), static_cast<DWORD>(wide.size()), &written,
                      nullptr);
    } else {
        const QByteArray bytes = text.toUtf8();
        WriteFile(handleOf(stream), bytes.constData(), static_cast<DWORD>(bytes.size()), &written,
                  nullptr);
    }
}
