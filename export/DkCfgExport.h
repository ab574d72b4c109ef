#pragma once

#include "export/ExportBase.h"

/// Writes the provisioning document for the cordless family, which numbers the account settings
/// differently.
///
/// The device is chosen by the MAC in the file name (see provisioningFileMac()); the codec name is
/// ignored, the document is always UTF-8. False when no device of the list has that MAC, with no
/// file touched, or when the file cannot be written.
class DkCfgExport : public ExportBase
{
    Q_OBJECT
public:
    using ExportBase::ExportBase;

    /// The document itself. Any thread.
    static QByteArray document(const ContactInfo &device);

    bool exportFile(const QString &codecName, const QString &filePath,
                    QList<ContactInfo> &devices) override;
};
