#pragma once

#include "model/DeviceList.h"
#include "storage/DeviceBackup.h"

#include <QByteArray>

#include <memory>

/// Writes one list to the backups, in steps of a few milliseconds. Only the last step takes longer:
/// it waits for the disk. GUI thread.
class ListBackup
{
public:
    using Step = DeviceBackup::Writing::Step;

    /// `backup` must outlive this object; its errorText() tells why a step failed.
    ListBackup(DeviceBackup &backup, const DeviceListSnapshot &list);
    ListBackup(const ListBackup &) = delete;
    ListBackup &operator=(const ListBackup &) = delete;
    ~ListBackup();

    Step step();

private:
    DeviceBackup &m_backup;
    DeviceListSnapshot m_list;
    QByteArray m_text;
    std::unique_ptr<DeviceBackup::Writing> m_writing; ///< null until the text is complete
    int m_row = 0;
};
