#include "export/MacCfgExport.h"

#include "export/ProvisioningDocument.h"

namespace {

constexpr AccountElements account = {{
    {"P47", &ContactInfo::sip_server},
    {"P35", &ContactInfo::sip_user_id},
    {"P270", &ContactInfo::first_account},
    {"P3", &ContactInfo::username},
    {"P36", &ContactInfo::auth_id},
    {"P34", &ContactInfo::password},
    {"P48", &ContactInfo::proxy_server},
    {"P290", &ContactInfo::dial_plan},
    {"P1362", &ContactInfo::language},
    {"P78", &ContactInfo::random_port},
    {"P84", &ContactInfo::keep_alive},
    {"P331", &ContactInfo::phonebook_path},
}};

} // namespace

QByteArray MacCfgExport::document(const ContactInfo &device)
{
    return provisioningDocument(device, account);
}

bool MacCfgExport::exportFile(const QString &codecName, const QString &filePath,
                              QList<ContactInfo> &devices)
{
    Q_UNUSED(codecName)
    return exportProvisioningDocument(filePath, devices, account);
}
