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

    /// Empties the list if that is wanted of this import. False when it could not be done, with
    /// the list as it was.
    virtual bool clearOld() = 0;
    /// Adds the devices of a file, in its order. Asks the user about those that are listed.
    virtual void addContacts(const QList<ContactInfo> &contacts) = 0;
};
