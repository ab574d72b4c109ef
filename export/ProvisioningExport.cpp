#include "export/ProvisioningExport.h"

bool ProvisioningExport::exportFile(const QString &codecName, const QString &filePath,
                                    QList<ContactInfo> &devices)
{
    Q_UNUSED(codecName)
    return exportProvisioningDocument(filePath, devices, m_family);
}
