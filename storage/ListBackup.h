#pragma once

#include "model/DeviceList.h"
#include "storage/DeviceBackup.h"

#include <QByteArray>

#include <memory>

/// Writes one list to the backups, in steps of a few milliseconds; only the last one, which puts
/// the file on the disk, takes as long as the disk does. GUI thread.
class ListBackup
{
public:
    using Step = DeviceBackup::Writing::Step;

    /// `backup` must outlive this object; it has the reason of a failure.
    ListBackup(DeviceBackup &backup, const DeviceListSnapshot &list);
    ListBackup(const ListBackup &) = delete;
    ListBackup &operator=(const ListBackup &) = delete;
    ~ListBackup();

    Step step();

private:
    DeviceBackup &m_backup;
    DeviceListSnapshot m_list;
    QByteArray m_text;
    std::unique_ptr<DeviceBackup::Writing> m_writing; ///< once the text is whole
    int m_row = 0;
};
