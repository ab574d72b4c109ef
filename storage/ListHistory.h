#pragma once

#include "model/DeviceList.h"
#include "storage/ListJob.h"

#include <QString>

#include <deque>
#include <vector>

/// One change of the list: from one row on, some rows were replaced by others.
struct ListChange
{
    enum class Kind { Add, Edit, Delete, Clear, Import, ImportCleared };

    Kind kind;
    int added = 0;    ///< how many devices an addition or import added
    int replaced = 0; ///< how many listed devices it replaced
    int row = 0;      ///< the first row that differs
    DeviceRows before;
    DeviceRows after;
    qint64 bytes = 0; ///< estimate of what the rows hold once no list shares them

    /// The change that leads from `before` to `after`; empty when both lists are the same.
    static ListChange between(Kind kind, const DeviceListSnapshot &before,
                              const DeviceListSnapshot &after);
    bool isEmpty() const { return before.size() == 0 && after.size() == 0; }
    /// Whether another list took the place of the one before.
    bool dropsList() const { return kind == Kind::Clear || kind == Kind::ImportCleared; }
};

/// The changes of the list in this run that can be undone or redone. Steps share the records that
/// they did not change. GUI thread.
class ListHistory
{
public:
    enum class Latest { Nothing, Made, Undone, Redone };

    /// Adds a change that was made, unless it is empty.
    void add(const ListChange &change);
    /// Notes that a job of this kind led from `before` to `after`. A new change discards those that
    /// could be redone and, beyond a limit, the oldest; loading a list discards all.
    void note(ListJob::Kind kind, bool isOtherList, const DeviceListSnapshot &before,
              const DeviceListSnapshot &after);

    /// The change that would be undone, or nullptr.
    const ListChange *toUndo() const;
    /// The change that would be redone, or nullptr.
    const ListChange *toRedo() const;
    /// What happened last.
    Latest latest() const { return m_latest; }
    /// Grows with each new change and each loaded list, but not by undo and redo: while it is the
    /// same, undo and redo go through the same changes.
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
