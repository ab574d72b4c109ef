#pragma once

#include "export/ProvisioningExport.h"

/// Writes the provisioning document for the cordless family, which numbers the account settings
/// differently.
class DkCfgExport : public ProvisioningExport
{
    Q_OBJECT
public:
    DkCfgExport()
        : ProvisioningExport(CordlessXml)
    {
    }
};
