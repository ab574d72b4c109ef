#pragma once

#include <QString>

/// What a command says to whoever typed it. Each platform has its own source. GUI thread.
namespace Console {

enum class Stream { Output, Error };

/// Takes the terminal that the program was started from, where that is not given anyway. To be
/// called first.
void open();
/// Whether somebody watches, and no file or other program takes what is written.
bool isTerminal(Stream stream);
/// Writes the text at once. Lines end in "\n".
void write(Stream stream, const QString &text);

} // namespace Console
