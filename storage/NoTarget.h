#pragma once

#include "model/ImportTarget.h"

/// The target of an importer that only reads, or only removes its files.
struct NoTarget : ImportTarget
{
    bool clearOld() override { return false; }
    void addContacts(const QList<ContactInfo> &contacts) override { Q_UNUSED(contacts) }
};
