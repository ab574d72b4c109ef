#include "storage/ListBackup.h"

#include "storage/DeviceBackup.h"

#include <algorithm>

namespace {
constexpr int rowsAtOnce = 500;
}

ListBackup::ListBackup(DeviceBackup &backup, const DeviceListSnapshot &list)
    : m_backup(backup)
    , m_list(list)
    , m_text(DeviceBackup::titleRow())
{
}

ListBackup::~ListBackup() = default;

ListBackup::Step ListBackup::step()
{
    if (m_writing)
        return m_writing->step();
    const int end = std::min(m_row + rowsAtOnce, m_list.size());
    for (; m_row < end; ++m_row)
        m_text += DeviceBackup::row(m_list.at(m_row).info);
    if (m_row >= m_list.size())
        m_writing = m_backup.writing(m_text);
    return Step::More;
}
