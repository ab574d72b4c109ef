#pragma once

#include "export/ExportBase.h"

/// Writes the whole list as a device list file with an English title row; see writeDeviceCsv().
class CSVOutlookExport : public ExportBase
{
    Q_OBJECT
public:
    using ExportBase::ExportBase;

    bool exportFile(const QString &codecName, const QString &filePath,
                    QList<ContactInfo> &devices) override;
};
