#pragma once

#include "model/DeviceList.h"

#include <QByteArray>

class DeviceBackup;

/// Writes one list to the backups, in steps of a few milliseconds; only the last one, which puts
/// the file on the disk, takes as long as the disk does. GUI thread.
class ListBackup
{
public:
    enum class Step { More, Done, Failed };

    /// `backup` must outlive this object; it has the reason of a failure.
    ListBackup(DeviceBackup &backup, const DeviceListSnapshot &list);

    Step step();

private:
    DeviceBackup &m_backup;
    DeviceListSnapshot m_list;
    QByteArray m_text;
    int m_row = 0;
};
