#include "import/ParseFactory.h"

#include "import/CSVParse.h"

ParseBase *ParseFactory::createParser(ImportTarget &target, const QString &workFolder)
{
    return new CSVParse(target, workFolder);
}
