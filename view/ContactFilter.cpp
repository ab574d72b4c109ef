#include "view/ContactFilter.h"

#include "view/ContactModel.h"
#include "view/ContactTitle.h"

#include <QVarLengthArray>

#include <algorithm>
#include <utility>

namespace {

bool isMacSeparator(QChar c)
{
    return c == QLatin1Char(':') || c == QLatin1Char('-') || c == QLatin1Char('.') || c.isSpace();
}

char16_t folded(QChar c)
{
    const char16_t unit = c.unicode();
    if (unit < 0x80)
        return unit >= 'A' && unit <= 'Z' ? char16_t(unit + ('a' - 'A')) : unit;
    return c.toCaseFolded().unicode();
}

/// Whether `text` contains `keyword`, which is already case-folded. Most comparisons fail at the
/// first character, so this beats a search that needs a set-up for each text.
bool contains(const QString &text, const QString &keyword)
{
    if (keyword.isEmpty())
        return true;
    const int last = text.size() - keyword.size();
    const QChar *const wanted = keyword.constData();
    const QChar *const from = text.constData();
    const char16_t first = wanted->unicode();
    const char16_t capital = first >= 'a' && first <= 'z' ? char16_t(first - ('a' - 'A')) : first;
    for (int start = 0; start <= last; ++start) {
        const char16_t unit = from[start].unicode();
        if (unit != first && unit != capital && unit < 0x80)
            continue;
        int length = 0;
        while (length < keyword.size() && folded(from[start + length]) == wanted[length].unicode())
            ++length;
        if (length == keyword.size())
            return true;
    }
    return false;
}

} // namespace

ContactFilter::ContactFilter(ContactModel &model, QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_model(model)
{
    setFilterCaseSensitivity(Qt::CaseInsensitive);
    setSourceModel(&model);
}

bool ContactFilter::setKeyword(int column, const QString &keyword)
{
    if (column == filterKeyColumn() && keyword == m_keyword)
        return false;

    // The base class removes and inserts rows one stretch at a time. That is quadratic for a
    // keyword that matches here and there: seconds for a hundred thousand devices. So the new rule
    // is set while every row keeps its state, and then the mapping is rebuilt as a whole. The
    // present mapping must exist before that, as it is what keeps the rows.
    rowCount();
    if (!isCurrent(m_accepted))
        acceptRows(false);
    // A keyword that contains the previous one can match only rows that the previous one matched.
    // In the column of MAC addresses this holds only if the previous keyword has digits.
    const bool narrower = column == filterKeyColumn() && keyword.contains(m_keyword) &&
                          (column != ContactModel::Mac || !m_digits.isEmpty());
    if (column != filterKeyColumn()) // the setter looks at every row even for the same column
        setFilterKeyColumn(column);
    setFilterFixedString(keyword);
    takeKeyword(keyword);
    acceptRows(narrower);
    invalidate();
    return true;
}

void ContactFilter::takeKeyword(const QString &keyword)
{
    m_keyword = keyword;
    m_folded = keyword;
    std::transform(m_folded.begin(), m_folded.end(), m_folded.begin(),
                   [](QChar c) { return QChar(folded(c)); });
    m_digits.clear();
    std::copy_if(m_folded.begin(), m_folded.end(), std::back_inserter(m_digits),
                 [](QChar c) { return !isMacSeparator(c); });
    const auto separator = std::find_if(keyword.begin(), keyword.end(), isMacSeparator);
    m_firstGroup = separator == keyword.end() ? -1 : static_cast<int>(separator - keyword.begin());
}

bool ContactFilter::isCurrent(const Accepted &accepted) const
{
    const DeviceListSnapshot &snapshot = m_model.snapshot();
    return accepted.version == snapshot.version() && accepted.rows.size() == snapshot.size();
}

/// Determines the rows that the keyword shows; if `narrower`, only among those accepted so far.
void ContactFilter::acceptRows(bool narrower)
{
    const DeviceListSnapshot &snapshot = m_model.snapshot();
    const QBitArray before = narrower ? m_accepted.rows : QBitArray();
    const int rows = snapshot.size();
    m_accepted = {snapshot.version(), QBitArray(rows)};
    for (int row = 0; row < rows; ++row) {
        if ((!narrower || before.testBit(row)) && matches(row))
            m_accepted.rows.setBit(row);
    }
}

bool ContactFilter::matches(int row) const
{
    const int column = filterKeyColumn();
    if (m_keyword.isEmpty())
        return true;
    if (column == ContactModel::Number)
        return contains(QString::number(m_model.shownNumber(row)), m_folded);
    const QString &text = m_model.text(row, column);
    return contains(text, m_folded) || (column == ContactModel::Mac && matchesMac(text));
}

/// Whether the digits of the address contain those of the keyword. A keyword with separators
/// matches at byte boundaries only: "2:00" does not match 20:0A.
bool ContactFilter::matchesMac(const QString &mac) const
{
    QVarLengthArray<char16_t, 32> digits;
    for (const QChar c : mac) {
        if (!isMacSeparator(c))
            digits.append(folded(c));
    }
    const int step = m_firstGroup < 0 ? 1 : 2;
    const int last = digits.size() - m_digits.size();
    for (int start = m_firstGroup < 0 ? 0 : m_firstGroup % 2; start <= last; start += step) {
        const auto from = digits.cbegin() + start;
        if (std::equal(m_digits.cbegin(), m_digits.cend(), from,
                       [](QChar wanted, char16_t unit) { return wanted.unicode() == unit; }))
            return !m_digits.isEmpty();
    }
    return false;
}

bool ContactFilter::filterAcceptsRow(int sourceRow, const QModelIndex & /*sourceParent*/) const
{
    return isCurrent(m_accepted) ? m_accepted.rows.testBit(sourceRow) : matches(sourceRow);
}

QVariant ContactFilter::data(const QModelIndex &index, int role) const
{
    if (role == Qt::AccessibleTextRole && index.isValid() && index.column() >= ContactModel::Detail)
        return ContactTitle::columnName(index.column());
    return QSortFilterProxyModel::data(index, role);
}

QVariant ContactFilter::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return ContactTitle::columnName(section);
    return QSortFilterProxyModel::headerData(section, orientation, role);
}
