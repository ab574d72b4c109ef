#pragma once

#include <QString>

/// A field of a CSV row: between quotes, with its own doubled, where it holds a comma or a quote.
QString csvField(const QString &text);
