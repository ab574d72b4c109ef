#pragma once

#include <QString>

/// What somebody on the network sent, or a list that was imported holds, as it may be shown to the
/// user: characters that would not be seen, or would change how the text around them is laid out
/// (controls, line ends of all kinds, overrides of the writing direction), become U+FFFD.
QString printableText(QString text);

/// The same of at most a hundred characters, with an ellipsis where some are left out: what is
/// named in a sentence has to leave the rest of it in sight. A line may end within it.
QString shortPrintableText(const QString &text);
