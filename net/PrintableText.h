#pragma once

#include <QString>

/// What somebody on the network sent, as it may be shown to the user: characters that would not be
/// seen, or would change how the text around them is laid out (controls, line ends of all kinds,
/// overrides of the writing direction), become U+FFFD.
QString printableText(QString text);
