#pragma once

#include "storage/ListSource.h"

/// A list in which some rows replace others: the list before a change, or after it. Shares the
/// records with both.
class RestoredDevices : public ListSource
{
public:
    /// `put` replaces the `gone` rows of `list` that begin at `first`.
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
