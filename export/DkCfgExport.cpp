#include "export/DkCfgExport.h"

#include "export/ProvisioningDocument.h"

namespace {

constexpr AccountElements account = {{
    {"P47", &ContactInfo::sip_server},
    {"P4060", &ContactInfo::sip_user_id},
    {"P270", &ContactInfo::first_account},
    {"P4180", &ContactInfo::username},
    {"P4090", &ContactInfo::auth_id},
    {"P4120", &ContactInfo::password},
    {"P48", &ContactInfo::proxy_server},
    {"P4200", &ContactInfo::dial_plan},
    {"P342", &ContactInfo::language},
    {"P78", &ContactInfo::random_port},
    {"P84", &ContactInfo::keep_alive},
    {"P331", &ContactInfo::phonebook_path},
}};

} // namespace

QByteArray DkCfgExport::document(const ContactInfo &device)
{
    return provisioningDocument(device, account);
}

bool DkCfgExport::exportFile(const QString &codecName, const QString &filePath,
                             QList<ContactInfo> &devices)
{
    Q_UNUSED(codecName)
    return exportProvisioningDocument(filePath, devices, account);
}
