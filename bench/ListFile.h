#pragma once

#include "storage/DeviceBackup.h"

#include <QTemporaryFile>

#include <cstdio>
#include <cstdlib>

/// A device list in a file in the folder `parent`. Ends the program if the file cannot be written.
class ListFile
{
public:
    ListFile(const QString &parent, const QList<ContactInfo> &devices)
        : m_file(parent + QStringLiteral("/bench-XXXXXX.csv"))
    {
        if (m_file.open() && m_file.write(DeviceBackup::csv(devices)) > 0 && m_file.flush())
            return;
        std::printf("the device list cannot be written\n");
        std::exit(1);
    }
    QString path() const { return m_file.fileName(); }

private:
    QTemporaryFile m_file;
};
