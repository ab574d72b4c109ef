#pragma once

#include "model/DeviceList.h"
#include "storage/DuplicateAnswer.h"

#include <QString>

/// Makes a job's new list aside, step by step, and changes nothing else. GUI thread.
class ListSource
{
public:
    enum class Step {
        More,
        Ask, ///< a device with this MAC is listed: the source waits for answer()
        Done,
        Failed
    };

    ListSource() = default;
    virtual ~ListSource() = default;
    ListSource(const ListSource &) = delete;
    ListSource &operator=(const ListSource &) = delete;

    /// Does the next piece of work, which takes a few milliseconds.
    virtual Step step() = 0;
    /// The new list; complete once step() has returned `Done`.
    virtual DeviceList &list() = 0;

    /// The MAC that is asked about, and whether more such questions may follow.
    virtual QString listedMac() const { return {}; }
    virtual bool hasSeveralListed() const { return false; }
    virtual void answer(DuplicateAnswer answer) { Q_UNUSED(answer) }
    /// False when nothing was added or replaced: the list is then neither announced nor saved.
    virtual bool hasChanged() const { return true; }
    /// Why it failed, for the user; may be empty.
    virtual QString reason() const { return {}; }
};
