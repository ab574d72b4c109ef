#pragma once

#include "model/ContactInfo.h"
#include "model/ExportType.h"

/// The MAC that a provisioning file's name asks for: the 12 characters from position 3 of the name
/// after the last "/", or as many as there are; empty when the name holds no "cfg". Neither
/// validated nor changed in case.
QString provisioningFileMac(const QString &filePath);

/// The whole document for one device, as its family wants it (see PhoneFamily), UTF-8. Characters
/// that XML 1.0 cannot hold are left out, as no telephone could parse the file with them.
QByteArray provisioningDocument(const ContactInfo &device, ExportType family);

/// Writes the document of the first of `devices` that the name of `filePath` asks for. The MAC of
/// every record examined loses its colons. The file is replaced as a whole, so a reader on another
/// thread gets the old document or the new one, and is left alone when it holds this document
/// already. Only the owner of the process may read it, as it holds a password.
bool exportProvisioningDocument(const QString &filePath, QList<ContactInfo> &devices,
                                ExportType family);
