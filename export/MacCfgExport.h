#pragma once

#include "export/ProvisioningExport.h"

/// Writes the provisioning document for desk phones.
class MacCfgExport : public ProvisioningExport
{
    Q_OBJECT
public:
    MacCfgExport()
        : ProvisioningExport(DeskPhoneXml)
    {
    }
};
