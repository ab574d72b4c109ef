#pragma once

#include "storage/ListSource.h"

/// A list with one edited device. When another device has its new MAC, the user is asked whether to
/// remove that device; "No" changes nothing.
class EditedDevice : public ListSource
{
public:
    /// `row` must exist in `list`.
    EditedDevice(const DeviceListSnapshot &list, int row, const ContactInfo &edited);

    Step step() override;
    DeviceList &list() override { return m_list; }
    QString listedMac() const override { return m_edited.mac; }
    void answer(DuplicateAnswer answer) override;
    bool hasChanged() const override { return m_next != Next::Nothing; }

private:
    enum class Next { Ask, Replace, Nothing };

    DeviceList m_list;
    int m_row;
    ContactInfo m_edited;
    int m_otherRow; ///< the first other device with the new MAC, or -1
    Next m_next;
};
