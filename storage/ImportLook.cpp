#include "storage/ImportLook.h"

#include "import/ParseBase.h"
#include "import/ParseFactory.h"
#include "import/TextSource.h"
#include "storage/ImportedDevices.h"
#include "storage/NoTarget.h"

#include <QDeadlineTimer>

namespace {

// In milliseconds. A job may take a slice as long beside it; the window still moves.
constexpr int sliceMilliseconds = 15;

/// The start of the work files' paths.
QString workPrefix(const QString &folder)
{
    return folder + QLatin1String("look-");
}

} // namespace

ImportLook::ImportLook(const DeviceList &devices, const QString &folder, QObject *parent)
    : QObject(parent)
    , m_devices(devices)
    , m_folder(folder)
    , m_nobody(std::make_unique<NoTarget>())
{
    m_turn.setSingleShot(true);
    connect(&m_turn, &QTimer::timeout, this, &ImportLook::turn);
}

ImportLook::~ImportLook()
{
    letGo();
}

void ImportLook::look(const QString &path)
{
    letGo();
    m_outlook = ImportOutlook();
    if (TextSource::isWorkFile(path, m_folder) ||
        TextSource::isWorkFile(path, workPrefix(m_folder))) {
        m_outlook.reason = importFaultText(ImportFault::OwnWorkFile);
        end(ImportOutlook::State::Refused);
        return;
    }
    m_list = m_devices.snapshot();
    m_outlook.listed = m_list.size();
    m_found.fill(false, m_list.size());
    m_parser.reset(ParseFactory().createParser(*m_nobody, workPrefix(m_folder)));
    m_parser->begin(path);
    m_outlook.state = ImportOutlook::State::Looking;
    emit changed();
    m_turn.start();
}

void ImportLook::stop()
{
    letGo();
    m_outlook = ImportOutlook();
    emit changed();
}

void ImportLook::turn()
{
    const QDeadlineTimer until(sliceMilliseconds);
    while (m_outlook.state == ImportOutlook::State::Looking && !until.hasExpired())
        step();
    if (m_outlook.state == ImportOutlook::State::Looking)
        m_turn.start();
}

void ImportLook::step()
{
    switch (m_parser->readOn()) {
    case ParseBase::Reading::More:
        count(m_parser->takeDevices());
        break;
    case ParseBase::Reading::Done:
        count(m_parser->takeDevices());
        m_outlook.encoding = m_parser->encoding();
        m_outlook.missing = missing();
        end(ImportOutlook::State::Ready);
        break;
    case ParseBase::Reading::Failed:
        m_outlook.reason = importFaultText(m_parser->fault());
        end(ImportOutlook::State::Refused);
        break;
    }
}

void ImportLook::count(const QList<ContactInfo> &devices)
{
    m_outlook.rows += devices.size();
    for (const ContactInfo &device : devices) {
        const int row = m_list.rowOfMac(device.mac);
        const bool isRepeated = row >= 0 ? m_found.testBit(row) : !add(device.mac);
        if (isRepeated) {
            ++m_outlook.repeated;
        } else if (row >= 0) {
            m_found.setBit(row);
            ++m_outlook.replacing;
        } else {
            ++m_outlook.added;
        }
    }
}

int ImportLook::missing() const
{
    int count = 0;
    // A MAC may be listed more than once; count() marks its first row.
    for (int row = 0; row < m_list.size(); ++row)
        count += m_found.testBit(m_list.rowOfMac(m_list.infoAt(row).mac)) ? 0 : 1;
    return count;
}

bool ImportLook::add(const QString &mac)
{
    const uint hash = qHash(mac);
    if (m_addedIndex.find(hash, [&](int row) { return m_added.at(row) == mac; }) >= 0)
        return false;
    m_addedIndex.insert(hash, m_added.size());
    m_added.append(mac);
    return true;
}

void ImportLook::end(ImportOutlook::State state)
{
    letGo();
    m_outlook.state = state;
    emit changed();
}

void ImportLook::letGo()
{
    m_turn.stop();
    m_list = DeviceListSnapshot();
    m_added = {};
    m_addedIndex.reset(0);
    if (!m_parser)
        return;
    m_parser->removeWorkFiles();
    m_parser.reset();
}

void ImportLook::removeWorkFiles(const QString &folder)
{
    ImportedDevices::removeWorkFiles(workPrefix(folder));
}
