#pragma once

#include "storage/ListSource.h"

class ListStore;

/// The list as it is stored.
class StoredDevices : public ListSource
{
public:
    /// `store` must outlive this object.
    explicit StoredDevices(ListStore &store)
        : m_store(store)
    {
    }

    Step step() override;
    DeviceList &list() override { return m_list; }
    QString reason() const override;

private:
    ListStore &m_store;
    DeviceList m_list;
};
