#include "export/CSVOutlookExport.h"

#include "export/DeviceCsv.h"
#include "model/ContactFields.h"

bool CSVOutlookExport::exportFile(const QString &codecName, const QString &filePath,
                                  QList<ContactInfo> &devices)
{
    // Rows end in a bare LF here, though the header line does not; readers of these files rely on
    // it.
    return writeDeviceCsv(codecName, filePath, devices, englishCsvHeader(), QStringLiteral("\n"),
                          m_reason);
}
