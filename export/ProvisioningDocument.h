#pragma once

#include "model/ContactInfo.h"
#include "model/ExportType.h"

/// The MAC in the name of a provisioning file: up to 12 characters from position 3 of the part
/// after the last "/"; empty when that part does not contain "cfg". The characters are neither
/// validated nor changed in case.
QString provisioningFileMac(const QString &filePath);

/// The whole document for one device in UTF-8, in the form that `family` requires (see
/// PhoneFamily). Leaves out characters that XML 1.0 forbids: no phone could parse a file with them.
QByteArray provisioningDocument(const ContactInfo &device, ExportType family);

/// Writes the document of the first of `devices` whose MAC is in the name of `filePath`. Removes
/// the colons from the MAC of every record examined. The file is replaced as a whole, so a reader
/// on another thread gets the old document or the new one; a file that already holds this document
/// is not written. It holds a password, so only the owner of the process may read it.
bool exportProvisioningDocument(const QString &filePath, QList<ContactInfo> &devices,
                                ExportType family);
