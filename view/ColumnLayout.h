#pragma once

#include "view/ContactModel.h"

#include <array>

class QFont;

/// Distributes the width of the table over its columns. All values are in logical pixels.
namespace ColumnLayout {

using Widths = std::array<int, ContactModel::ColumnCount>;

/// Room before the text of a cell and of its header label.
constexpr int textMargin = 8;
/// Room after the text of a cell. The next cell adds its own margin.
constexpr int textEnd = 2;

/// The least width of each column: enough for its header word, a MAC address, a product model or a
/// running number up to `highestNumber` in this font, and never below a fixed minimum.
Widths minimums(const QFont &font, int highestNumber);

/// The column widths for a viewport of this width. They add up to exactly `viewportWidth`, or to
/// the sum of the minimums if the viewport is narrower.
Widths widths(int viewportWidth, const Widths &minimums);

} // namespace ColumnLayout
