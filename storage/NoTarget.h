#pragma once

#include "model/ImportTarget.h"

/// For an importer that only reads, or removes its files.
struct NoTarget : ImportTarget
{
    bool clearOld() override { return false; }
    void addContacts(const QList<ContactInfo> &contacts) override { Q_UNUSED(contacts) }
};
