#pragma once

#include "model/ContactInfo.h"

/// What an import may ask of the data manager. GUI thread.
class ImportTarget
{
public:
    ImportTarget() = default;
    virtual ~ImportTarget() = default;
    ImportTarget(const ImportTarget &) = delete;
    ImportTarget &operator=(const ImportTarget &) = delete;

    /// Empties the list if this import replaces it. False when that failed; the list is then
    /// unchanged.
    virtual bool clearOld() = 0;
    /// Adds the devices of a file, in its order. Asks the user about those already in the list.
    virtual void addContacts(const QList<ContactInfo> &contacts) = 0;
};
