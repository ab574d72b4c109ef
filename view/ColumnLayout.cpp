#include "view/ColumnLayout.h"

#include "model/ValueTables.h"
#include "view/ContactTitle.h"
#include "view/SearchEdit.h"

#include <QFont>
#include <QFontMetrics>

#include <algorithm>

namespace ColumnLayout {

namespace {

struct Share
{
    int minimum;
    int weight; ///< of the width that is left when every column has its minimum
};

// Number and actions never need much more; a server name or a company may be long.
constexpr std::array<Share, ContactModel::ColumnCount> shares = {{
    {56, 0},  // Number
    {130, 1}, // Mac
    {66, 2},  // Product
    {82, 6},  // SipServer
    {66, 4},  // FirstAccount
    {80, 4},  // SipUserId
    {50, 3},  // City
    {66, 5},  // Company
    {80, 4},  // Department
    {48, 0},  // Detail
    {48, 0},  // Delete
}};

/// Closer than the margins of a cell: nothing is cut off by it, and the smallest window holds the
/// words of a large font.
constexpr int headerMargins = textMargin + 2;
/// The words over the buttons stand in the middle.
constexpr int actionMargins = 6;
/// Beside the word in a search box: its margins and its frame. The magnifier comes on top where the
/// column is wider.
constexpr int searchBoxMargins = 17;
/// Beside what is typed there: the same, and the cursor.
constexpr int searchTextMargins = 19;
constexpr int fewestNumberDigits = 5;
/// What the columns of the buttons get beyond their words in a wide window.
constexpr int mostActionAir = 10;

} // namespace

Widths minimums(const QFont &font, int highestNumber)
{
    QFont headerFont = font;
    headerFont.setWeight(QFont::DemiBold);
    const QFontMetrics headerMetrics(headerFont);
    const QFontMetrics metrics(font);
    Widths result = {};
    for (std::size_t column = 0; column < shares.size(); ++column) {
        const QString word = ContactTitle::columnName(static_cast<int>(column));
        result[column] = shares[column].minimum;
        const auto makeRoom = [&](int width) { result[column] = std::max(result[column], width); };
        if (column >= ContactModel::Product)
            makeRoom(
                headerMetrics.horizontalAdvance(word) +
                (ContactModel::isAction(static_cast<int>(column)) ? actionMargins : headerMargins));
        if (column < SearchEdit::boxCount)
            makeRoom(metrics.horizontalAdvance(word) + searchBoxMargins);
    }
    const auto makeRoomFor = [&](std::size_t column, const QString &text) {
        result[column] =
            std::max(result[column], textMargin + metrics.horizontalAdvance(text) + textEnd);
    };
    // Of the widest digit, so that no address is ever cut short.
    makeRoomFor(ContactModel::Mac, QStringLiteral("DD:DD:DD:DD:DD:DD"));
    for (const QString &model : productModels())
        makeRoomFor(ContactModel::Product, model);
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

    left = std::max(0, left);
    const int air = std::min(left / 20, mostActionAir);
    for (const std::size_t action : {ContactModel::Detail, ContactModel::Delete}) {
        result[action] += air;
        left -= air;
    }
    // Each column takes its part of what is then left, so that rounding never loses a pixel.
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
