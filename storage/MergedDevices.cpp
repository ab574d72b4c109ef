#include "storage/MergedDevices.h"

#include "model/DebugLog.h"
#include "model/FreeMemory.h"
#include "storage/LongList.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace {
constexpr int devicesAtOnce = 100;
}

MergedDevices::MergedDevices(const DeviceListSnapshot &list, const QList<ContactInfo> &devices)
    : m_list(list)
    , m_devices(devices)
{
}

MergedDevices::MergedDevices(const DeviceListSnapshot &list, const DeviceListSnapshot &dropped)
    : m_list(list)
    , m_dropped(dropped)
{
}

MergedDevices::~MergedDevices()
{
    if (isLongList(m_devices.size() + m_dropped.size()))
        freeAside(std::make_pair(std::move(m_devices), std::move(m_dropped)));
}

ListSource::Step MergedDevices::step()
{
    const int end = std::min(m_next + devicesAtOnce, m_devices.size());
    for (; m_next < end; ++m_next) {
        const ContactInfo &device = m_devices.at(m_next);
        const int row = m_list.rowOfMac(device.mac);
        if (!isAnswered() && row >= 0) {
            // No device before the first listed one was listed, so the rest tells of all.
            if (!m_severalListed)
                m_severalListed = areSeveralListed();
            return Step::Ask;
        }
        addOrReplace(row, device, m_answerForAll.value_or(DuplicateAnswer::Replace));
        letGoOf(m_next);
    }
    return m_next == m_devices.size() ? Step::Done : Step::More;
}

/// Frees a device's texts once they are in the list, as both would take twice the memory. Devices
/// that somebody else holds as well are left alone.
void MergedDevices::letGoOf(int device)
{
    if (m_devices.isDetached())
        m_devices[device] = ContactInfo();
}

QString MergedDevices::listedMac() const
{
    return m_devices.at(m_next).mac;
}

/// Whether the list, or a device further up, has the MAC of more than one remaining device.
bool MergedDevices::areSeveralListed() const
{
    QSet<QString> seen;
    int listed = 0;
    for (int i = m_next; i < m_devices.size() && listed < 2; ++i) {
        const QString &mac = m_devices.at(i).mac;
        if (seen.contains(mac) || m_list.rowOfMac(mac) >= 0)
            ++listed;
        seen.insert(mac);
    }
    return listed > 1;
}

void MergedDevices::answer(DuplicateAnswer answer)
{
    if (answer == DuplicateAnswer::KeepAll || answer == DuplicateAnswer::ReplaceAll)
        m_answerForAll = answer;
    const ContactInfo &device = m_devices.at(m_next++);
    addOrReplace(m_list.rowOfMac(device.mac), device, answer);
}

void MergedDevices::addOrReplace(int row, const ContactInfo &device, DuplicateAnswer answer)
{
    qCDebug(debugLog) << "insertContactNode.";
    if (row < 0)
        add(device);
    else if (answer != DuplicateAnswer::Replace && answer != DuplicateAnswer::ReplaceAll)
        return;
    else if (!hasSameTexts(m_list.at(row).info, device))
        m_list.replaceAt(row, device);
    m_changed = true;
}

void MergedDevices::add(const ContactInfo &device)
{
    const int row = m_dropped.rowOfMac(device.mac);
    if (row >= 0 && hasSameTexts(m_dropped.infoAt(row), device))
        m_list.append(m_dropped, row);
    else
        m_list.append(device);
}
