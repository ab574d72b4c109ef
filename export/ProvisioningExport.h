#pragma once

#include "export/ExportBase.h"
#include "export/ProvisioningDocument.h"

/// Writes the provisioning document of any family.
///
/// The MAC in the file name chooses the device (see provisioningFileMac()). The codec name is
/// ignored; the document is always UTF-8. False when no device in the list has that MAC, with no
/// file touched, or when the file cannot be written.
class ProvisioningExport : public ExportBase
{
    Q_OBJECT
public:
    /// `family` is the document type of one of the families.
    explicit ProvisioningExport(ExportType family)
        : m_family(family)
    {
    }

    bool exportFile(const QString &codecName, const QString &filePath,
                    QList<ContactInfo> &devices) override;

private:
    ExportType m_family;
};
