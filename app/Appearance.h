#pragma once

class QApplication;

/// Gives the program its look: widget style, palette, and the style sheet of the resource folder,
/// without which the program still works. Call it once, before the first window, with the
/// program's folder as the working directory.
void applyAppearance(QApplication &application);
