#include "view/ColumnLayout.h"

#include "view/ContactTitle.h"
#include "view/SearchEdit.h"

#include <QFontMetrics>

#include <algorithm>

namespace ColumnLayout {

namespace {

struct Share
{
    int minimum;
    int weight; ///< of the width that is left when every column has its minimum
};

// Number and actions never need more; a server name or a company may be long.
constexpr std::array<Share, ContactModel::ColumnCount> shares = {{
    {56, 0},  // Number
    {140, 1}, // Mac
    {72, 2},  // Product
    {96, 6},  // SipServer
    {76, 4},  // FirstAccount
    {88, 4},  // SipUserId
    {56, 3},  // City
    {76, 5},  // Company
    {88, 4},  // Department
    {58, 0},  // Detail
    {58, 0},  // Delete
}};

/// Closer than the margins of a cell: nothing is cut off by it, and the smallest window holds the
/// words of a large font.
constexpr int headerMargins = textMargin + 4;
/// Beside the word in a search box: its margins, its frame and the magnifier.
constexpr int searchBoxMargins = textMargin + 22;
/// Beside what is typed there: its margins, its frame and the cursor.
constexpr int searchTextMargins = 22;
constexpr int fewestNumberDigits = 5;

} // namespace

Widths minimums(const QFontMetrics &metrics, int highestNumber)
{
    Widths result = {};
    for (std::size_t column = 0; column < shares.size(); ++column) {
        const QString word = ContactTitle::columnName(static_cast<int>(column));
        const int margins = column < SearchEdit::boxCount ? searchBoxMargins : headerMargins;
        result[column] =
            std::max(shares[column].minimum, metrics.horizontalAdvance(word) + margins);
    }
    const auto makeRoom = [&](ContactModel::Column column, const QString &text) {
        result[column] = std::max(result[column], metrics.horizontalAdvance(text) + 2 * textMargin);
    };
    // Of the widest digit, so that no address is ever cut short.
    makeRoom(ContactModel::Mac, QStringLiteral("DD:DD:DD:DD:DD:DD"));
    const int digits = std::max(QString::number(highestNumber).size(), fewestNumberDigits);
    const int digitsWidth = metrics.horizontalAdvance(QString(digits, QLatin1Char('8')));
    result[ContactModel::Number] =
        std::max(result[ContactModel::Number], digitsWidth + searchTextMargins);
    return result;
}

Widths widths(int viewportWidth, const Widths &minimums)
{
    Widths result = minimums;
    int left = viewportWidth;
    int weights = 0;
    for (std::size_t column = 0; column < shares.size(); ++column) {
        left -= minimums[column];
        weights += shares[column].weight;
    }

    // Each column takes its part of what is then left, so that rounding never loses a pixel.
    left = std::max(0, left);
    for (std::size_t column = 0; column < shares.size(); ++column) {
        if (shares[column].weight == 0)
            continue;
        const int extra = left * shares[column].weight / weights;
        result[column] += extra;
        left -= extra;
        weights -= shares[column].weight;
    }
    return result;
}

} // namespace ColumnLayout
