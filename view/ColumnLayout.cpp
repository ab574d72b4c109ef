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
    int weight; ///< relative share of the width beyond all minimums
};

// The number and the buttons never need much more. A server name or a company may be long.
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
static_assert(shares.back().minimum > 0, "each column has a share");

/// As narrow as the margins of a cell, so that the words of a large font fit the smallest window.
constexpr int headerMargins = textMargin + 2;
/// The header words over the buttons are centred.
constexpr int actionMargins = 6;
/// What a search box needs beside its word: margins and frame. The magnifier appears only where the
/// column has more room.
constexpr int searchBoxMargins = 17;
/// What a search box needs beside typed text: the same, and the cursor.
constexpr int searchTextMargins = 19;
constexpr int fewestNumberDigits = 5;
/// The most that a button column gets beyond its minimum in a wide window.
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
    // D is the widest hexadecimal digit, so no address is ever cut short.
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
    // Each column takes its share of the width then left, so that rounding never loses a pixel.
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
