#pragma once

class QApplication;

/// Gives the program its look: widget style, palette, and the style sheet of the resource folder,
/// without which the program still works. Call it once, before the first window, with the
/// program's folder as the working directory.
void applyAppearance(QApplication &application);

/// Writes Chinese in the shapes and with the punctuation of simplified Chinese. Left to itself, a
/// system set to another language takes Japanese shapes where the two differ, and a Latin font's
/// quotation marks. Call it before the widgets are made.
void applyChineseFont();
