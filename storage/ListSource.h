#pragma once

#include "model/DeviceList.h"
#include "storage/DuplicateAnswer.h"

#include <QString>

/// Where a job's new list comes from. Makes it aside, step by step, and changes nothing else.
/// GUI thread.
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

    /// The next piece of work, a few milliseconds long.
    virtual Step step() = 0;
    /// The list, complete after the step that was `Done`.
    virtual DeviceList &list() = 0;

    /// The MAC that is asked about, and whether more questions like it are to come.
    virtual QString listedMac() const { return {}; }
    virtual bool hasSeveralListed() const { return false; }
    virtual void answer(DuplicateAnswer answer) { Q_UNUSED(answer) }
    /// False when nothing differs from the list before, so that it is neither announced nor saved.
    virtual bool hasChanged() const { return true; }
    /// Why it failed, for the user; empty when there is nothing to add.
    virtual QString reason() const { return {}; }
};
