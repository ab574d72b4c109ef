#include "storage/RestoredDevices.h"

#include <algorithm>

namespace {
constexpr int rowsAtOnce = 1000;
}

RestoredDevices::RestoredDevices(const DeviceListSnapshot &list, int first, int gone,
                                 const DeviceRows &put)
    : m_before(list)
    , m_first(first)
    , m_gone(gone)
    , m_put(put)
{
}

ListSource::Step RestoredDevices::step()
{
    const int size = m_before.size() - m_gone + m_put.size();
    const int end = std::min(m_list.size() + rowsAtOnce, size);
    for (int row = m_list.size(); row < end; ++row) {
        const int put = row - m_first;
        if (put < 0)
            m_list.append(m_before, row);
        else if (put < m_put.size())
            m_list.append(m_put, put);
        else
            m_list.append(m_before, row - m_put.size() + m_gone);
    }
    return end == size ? Step::Done : Step::More;
}
