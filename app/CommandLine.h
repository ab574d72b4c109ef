#pragma once

/// What the program does without a window, when it is started with options of its own. Neither a
/// screen nor a running copy is needed, and none is woken.
namespace CommandLine {

/// Whether an argument asks for that: one that begins with "--", "-h" or "-v". Qt's own options for
/// the window have a single "-".
bool isWanted(int argc, char *const *argv);

/// Does what the arguments say and returns the exit status: 0, or 1 when it failed, for the reason
/// on standard error. Makes the application object; to be called once, in the place of everything
/// else.
int run(int &argc, char **argv);

} // namespace CommandLine
