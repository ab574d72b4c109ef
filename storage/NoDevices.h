#pragma once

#include "model/DeviceList.h"
#include "storage/ListSource.h"

/// An empty list, which replaces the present one.
class NoDevices : public ListSource
{
public:
    Step step() override { return Step::Done; }
    DeviceList &list() override { return m_list; }

private:
    DeviceList m_list;
};
