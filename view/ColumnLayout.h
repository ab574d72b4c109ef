#pragma once

#include "view/ContactModel.h"

#include <array>

class QFont;

/// How the table shares its width out to its columns. All in logical pixels.
namespace ColumnLayout {

using Widths = std::array<int, ContactModel::ColumnCount>;

/// Room before a cell's text, and before its header label.
constexpr int textMargin = 8;
/// Room behind a cell's text; the next cell has its own.
constexpr int textEnd = 2;

/// What each column needs in this font to show its header word, a MAC address, or a running number
/// up to `highestNumber`; never less than suits the usual font.
Widths minimums(const QFont &font, int highestNumber);

/// The column widths for a viewport of this width. They add up to exactly `viewportWidth`, or to
/// the sum of the minimums where the viewport is narrower than that.
Widths widths(int viewportWidth, const Widths &minimums);

} // namespace ColumnLayout
