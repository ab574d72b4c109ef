#pragma once

/// Runs the program without a window, if it is started with options of its own. That needs neither
/// a screen nor a running copy, and wakes none.
namespace CommandLine {

/// Whether an argument asks for that: "-h", "-v" or one that begins with "--". Qt's own options for
/// the window have a single "-".
bool isWanted(int argc, char *const *argv);

/// Does what the arguments say and returns the exit status: 0, or 1 on failure, with the reason on
/// standard error. Creates the application object; call it once, instead of everything else.
int run(int &argc, char **argv);

} // namespace CommandLine
