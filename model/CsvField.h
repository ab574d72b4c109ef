#pragma once

#include <QString>

/// The text as a field of a CSV row: quoted, its quotes doubled, if it holds a comma or a quote.
QString csvField(const QString &text);
