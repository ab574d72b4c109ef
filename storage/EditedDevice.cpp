#include "storage/EditedDevice.h"

namespace {

/// Row of another device with this MAC, or -1. An unchanged MAC is not asked about: -1 as well.
int rowOfOther(const DeviceListSnapshot &list, int row, const QString &mac)
{
    return list.at(row).info.mac == mac ? -1 : list.rowOfMac(mac);
}

} // namespace

EditedDevice::EditedDevice(const DeviceListSnapshot &list, int row, const ContactInfo &edited)
    : m_list(list)
    , m_row(row)
    , m_edited(edited)
    , m_otherRow(rowOfOther(list, row, edited.mac))
    , m_next(m_otherRow < 0 ? Next::Replace : Next::Ask)
{
}

ListSource::Step EditedDevice::step()
{
    if (m_next == Next::Ask)
        return Step::Ask;
    if (m_next == Next::Replace) {
        m_list.replaceAt(m_row, m_edited);
        if (m_otherRow >= 0)
            m_list.removeAt(m_otherRow);
    }
    return Step::Done;
}

void EditedDevice::answer(DuplicateAnswer answer)
{
    const bool replace =
        answer == DuplicateAnswer::Replace || answer == DuplicateAnswer::ReplaceAll;
    m_next = replace ? Next::Replace : Next::Nothing;
}
