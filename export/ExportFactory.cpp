#include "export/ExportFactory.h"

#include "export/CSVOutlookCNExport.h"
#include "export/CSVOutlookExport.h"
#include "export/DkCfgExport.h"
#include "export/MacCfgExport.h"
#include "model/PhoneFamily.h"

ExportFactory *ExportFactory::instance()
{
    static auto *const factory = new ExportFactory;
    return factory;
}

ExportBase *ExportFactory::createExporter(int type)
{
    switch (type) {
    case CsvEnglish:
        return new CSVOutlookExport;
    case CsvChinese:
        return new CSVOutlookCNExport;
    case DeskPhoneXml:
        return new MacCfgExport;
    case CordlessXml:
        return new DkCfgExport;
    default:
        return isFamilyDocument(type) ? new ProvisioningExport(static_cast<ExportType>(type))
                                      : nullptr;
    }
}
