#include "export/CSVOutlookExport.h"

#include "export/DeviceCsv.h"
#include "model/ContactFields.h"

#include <QStringList>

bool CSVOutlookExport::exportFile(const QString &codecName, const QString &filePath,
                                  QList<ContactInfo> &devices)
{
    QStringList titles;
    for (const ContactField &field : contactCsvFields())
        titles.append(QLatin1String(field.csvLabel));
    // Rows end in a bare LF here, though the header line does not; readers of these files rely on
    // it.
    return writeDeviceCsv(codecName, filePath, devices, titles.join(QLatin1Char(',')),
                          QStringLiteral("\n"));
}
