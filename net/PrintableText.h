#pragma once

#include <QString>

/// A text from the network or from an imported list, made fit to be shown to the user: characters
/// that are invisible or change the layout of the text around them (controls, line ends of all
/// kinds, overrides of the writing direction) become U+FFFD.
QString printableText(QString text);

/// The same, cut off after a hundred characters with an ellipsis: a name in a sentence must leave
/// the rest of the sentence in sight. Lines may break within it.
QString shortPrintableText(const QString &text);
