#include "storage/ImportedDevices.h"

#include "import/ParseBase.h"
#include "import/ParseFactory.h"
#include "storage/NoTarget.h"

ImportedDevices::ImportedDevices(const DeviceListSnapshot &list, const DeviceListSnapshot &dropped,
                                 const QString &workFolder, const QString &path)
    : MergedDevices(list, dropped)
    , m_nobody(std::make_unique<NoTarget>())
    , m_parser(ParseFactory().createParser(*m_nobody, workFolder))
{
    m_parser->begin(path);
}

ImportedDevices::~ImportedDevices() = default;

ListSource::Step ImportedDevices::step()
{
    if (!m_parser)
        return MergedDevices::step();
    switch (m_parser->readOn()) {
    case ParseBase::Reading::More:
        break;
    case ParseBase::Reading::Done:
        setDevices(m_parser->takeDevices());
        endReading();
        break;
    case ParseBase::Reading::Failed:
        m_reason = importFaultText(m_parser->fault());
        endReading();
        return Step::Failed;
    }
    return Step::More;
}

/// Removes the work files: the save may need their disk space.
void ImportedDevices::endReading()
{
    m_parser->removeWorkFiles();
    m_parser.reset();
}

void ImportedDevices::removeWorkFiles(const QString &workFolder)
{
    NoTarget nobody;
    const std::unique_ptr<ParseBase> parser(ParseFactory().createParser(nobody, workFolder));
    parser->removeWorkFiles();
}
