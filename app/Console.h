#pragma once

#include <QString>

/// The console output of a command. Each platform has its own source. GUI thread.
namespace Console {

enum class Stream { Output, Error };

/// Attaches to the terminal from which the program was started, unless the system does that. Call
/// it first.
void open();
/// Whether the stream goes to a terminal, and not to a file or another program.
bool isTerminal(Stream stream);
/// Writes the text at once. Lines end in "\n".
void write(Stream stream, const QString &text);

} // namespace Console
