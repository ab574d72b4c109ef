#pragma once

#include "model/DeviceList.h"
#include "storage/ListJob.h"

#include <QString>

#include <deque>
#include <vector>

/// What one change made of the list: from one row on, some rows gave way to others.
struct ListChange
{
    enum class Kind { Add, Edit, Delete, Clear, Import, ImportCleared };

    Kind kind;
    int added = 0;    ///< how many devices more, of an addition or import
    int replaced = 0; ///< how many that were listed
    int row = 0;      ///< the first that differs
    DeviceRows before;
    DeviceRows after;
    qint64 bytes = 0; ///< that the rows hold when no list has them any more, about

    /// Empty when both lists say the same.
    static ListChange between(Kind kind, const DeviceListSnapshot &before,
                              const DeviceListSnapshot &after);
    bool isEmpty() const { return before.size() == 0 && after.size() == 0; }
    /// Another list took the place of the one before.
    bool dropsList() const { return kind == Kind::Clear || kind == Kind::ImportCleared; }
};

/// The changes of the list in this run that can be taken back, and those that were and can be made
/// again. Steps share the records that they did not change. GUI thread.
class ListHistory
{
public:
    enum class Latest { Nothing, Made, Undone, Redone };

    /// A change was made, unless it is empty.
    void add(const ListChange &change);
    /// A job of this kind has made the second list of the first. A change forgets what was taken
    /// back before it, and the oldest changes when there are too many; loading a list forgets all.
    void note(ListJob::Kind kind, bool isOtherList, const DeviceListSnapshot &before,
              const DeviceListSnapshot &after);

    /// The change that would be taken back, or nullptr.
    const ListChange *toUndo() const;
    /// The change that would be made again, or nullptr.
    const ListChange *toRedo() const;
    /// What happened last.
    Latest latest() const { return m_latest; }
    /// Grows with each change that is not taken back or made again: while it stands still, these
    /// two mean the changes that they meant before.
    int changeCount() const { return m_changeCount; }

private:
    void clear();
    void undone();
    void redone();
    void forget();

    Latest m_latest = Latest::Nothing;
    int m_changeCount = 0;
    std::deque<ListChange> m_made;
    std::vector<ListChange> m_takenBack;
};
