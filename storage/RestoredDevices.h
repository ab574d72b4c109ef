#pragma once

#include "storage/ListSource.h"

/// A list in which some rows give way to others: how it was before a change, or after it. Shares
/// the records.
class RestoredDevices : public ListSource
{
public:
    /// `put` takes the place of the `gone` rows of `list` that begin at `first`.
    RestoredDevices(const DeviceListSnapshot &list, int first, int gone, const DeviceRows &put);

    Step step() override;
    DeviceList &list() override { return m_list; }

private:
    DeviceListSnapshot m_before;
    int m_first;
    int m_gone;
    DeviceRows m_put;
    DeviceList m_list;
};
