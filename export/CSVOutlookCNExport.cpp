#include "export/CSVOutlookCNExport.h"

#include "export/DeviceCsv.h"
#include "model/ContactFields.h"

bool CSVOutlookCNExport::exportFile(const QString &codecName, const QString &filePath,
                                    QList<ContactInfo> &devices)
{
    return writeDeviceCsv(codecName, filePath, devices, chineseCsvHeader(), QStringLiteral("\r\n"),
                          m_reason);
}
