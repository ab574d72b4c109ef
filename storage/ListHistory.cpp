#include "storage/ListHistory.h"

#include "model/ContactFields.h"
#include "model/FreeMemory.h"
#include "storage/LongList.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

constexpr std::size_t mostSteps = 200;
constexpr qint64 mostBytes = qint64(100) * 1000 * 1000;

/// Estimates the memory of these rows from a sample. A text that rows share counts for each.
qint64 bytesOf(const DeviceRows &rows)
{
    constexpr int looks = 500;
    constexpr qint64 bytesOfRecord = 250; // without its texts
    const int stride = std::max(1, rows.size() / looks);
    qint64 bytes = 0;
    int looked = 0;
    for (int row = 0; row < rows.size(); row += stride, ++looked) {
        for (const ContactField &field : contactFields())
            bytes += (rows.infoAt(row).*field.member).size() * qint64(sizeof(QChar));
    }
    return looked == 0 ? 0 : rows.size() * (bytes / looked + bytesOfRecord);
}

int countDifferent(const DeviceListSnapshot &one, const DeviceListSnapshot &other)
{
    int different = 0;
    for (int row = std::min(one.size(), other.size()) - 1; row >= 0; --row)
        different += one.isSameRecord(row, other, row) ? 0 : 1;
    return different;
}

void letGo(ListChange change)
{
    if (isLongList(change.before.size() + change.after.size()))
        freeAside(std::move(change));
}

} // namespace

ListChange ListChange::between(Kind kind, const DeviceListSnapshot &before,
                               const DeviceListSnapshot &after)
{
    ListChange change = {kind, 0, 0, 0, {}, {}, 0};
    const int common = std::min(before.size(), after.size());
    while (change.row < common && before.isSameRecord(change.row, after, change.row))
        ++change.row;
    int tail = 0;
    while (tail < common - change.row &&
           before.isSameRecord(before.size() - 1 - tail, after, after.size() - 1 - tail))
        ++tail;
    change.before = before.rows(change.row, before.size() - change.row - tail);
    change.after = after.rows(change.row, after.size() - change.row - tail);
    if (kind == Kind::Add || kind == Kind::Import) {
        change.added = after.size() - before.size();
        change.replaced = countDifferent(before, after);
    } else if (kind == Kind::ImportCleared) {
        change.added = after.size();
    }
    const qint64 rows = change.before.size() + change.after.size();
    const qint64 ownRows = std::min(rows, 2 * qint64(change.added + change.replaced + 1));
    change.bytes = bytesOf(change.before) + bytesOf(change.after);
    // Between the scattered changes of an import, most rows are unchanged.
    if (!change.dropsList() && rows > 0)
        change.bytes = change.bytes / rows * ownRows + rows * qint64(sizeof(void *));
    return change;
}

void ListHistory::note(ListJob::Kind kind, bool isOtherList, const DeviceListSnapshot &before,
                       const DeviceListSnapshot &after)
{
    const auto addAs = [&](ListChange::Kind change) {
        add(ListChange::between(change, before, after));
    };
    switch (kind) {
    case ListJob::Kind::Load:
        clear();
        break;
    case ListJob::Kind::Insert:
    case ListJob::Kind::Add:
        addAs(ListChange::Kind::Add);
        break;
    case ListJob::Kind::Edit:
        addAs(ListChange::Kind::Edit);
        break;
    case ListJob::Kind::Import:
        addAs(isOtherList ? ListChange::Kind::ImportCleared : ListChange::Kind::Import);
        break;
    case ListJob::Kind::Clear:
        addAs(ListChange::Kind::Clear);
        break;
    case ListJob::Kind::Undo:
        undone();
        break;
    case ListJob::Kind::Redo:
        redone();
        break;
    case ListJob::Kind::Save:
        break;
    }
}

void ListHistory::add(const ListChange &change)
{
    if (change.isEmpty())
        return;
    m_latest = Latest::Made;
    ++m_changeCount;
    while (!m_takenBack.empty()) {
        letGo(std::move(m_takenBack.back()));
        m_takenBack.pop_back();
    }
    m_made.push_back(change);
    forget();
}

/// Discards the oldest steps beyond the limits. The newest step stays, however large it is.
void ListHistory::forget()
{
    qint64 bytes =
        std::accumulate(m_made.begin(), m_made.end(), qint64(0),
                        [](qint64 sum, const ListChange &change) { return sum + change.bytes; });
    while (m_made.size() > mostSteps || (m_made.size() > 1 && bytes > mostBytes)) {
        bytes -= m_made.front().bytes;
        letGo(std::move(m_made.front()));
        m_made.pop_front();
    }
}

void ListHistory::clear()
{
    const int count = m_changeCount;
    *this = ListHistory();
    m_changeCount = count + 1;
}

const ListChange *ListHistory::toUndo() const
{
    return m_made.empty() ? nullptr : &m_made.back();
}

const ListChange *ListHistory::toRedo() const
{
    return m_takenBack.empty() ? nullptr : &m_takenBack.back();
}

void ListHistory::undone()
{
    m_latest = Latest::Undone;
    m_takenBack.push_back(m_made.back());
    m_made.pop_back();
}

void ListHistory::redone()
{
    m_latest = Latest::Redone;
    m_made.push_back(m_takenBack.back());
    m_takenBack.pop_back();
}
