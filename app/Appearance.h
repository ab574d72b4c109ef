#pragma once

class QApplication;

/// Gives the program its look: widget style, palette, and the style sheet of the resource folder,
/// without which the program still works. Call it once, before the first window, with the
/// program's folder as the working directory.
void applyAppearance(QApplication &application);

/// Selects fonts with the shapes and the punctuation of simplified Chinese. By default, a system
/// set to another language takes Japanese shapes where the two differ, and the quotation marks of a
/// Latin font. Call it before the widgets are created.
void applyChineseFont();
