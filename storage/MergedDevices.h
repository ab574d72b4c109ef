#pragma once

#include "storage/ListSource.h"

#include <QList>

#include <optional>
#include <utility>

/// A list with devices added to it. A device whose MAC is not listed is appended; any other
/// replaces the listed device or is left out, as the user answers.
class MergedDevices : public ListSource
{
public:
    /// Adds `devices`, in their order, to `list`.
    MergedDevices(const DeviceListSnapshot &list, const QList<ContactInfo> &devices);

    ~MergedDevices() override;

    Step step() override;
    DeviceList &list() override { return m_list; }
    QString listedMac() const override;
    bool hasSeveralListed() const override { return m_severalListed.value_or(false); }
    void answer(DuplicateAnswer answer) override;
    bool hasChanged() const override { return m_changed; }

protected:
    /// The result takes the place of `dropped` and shares the unchanged records with it: this makes
    /// a comparison of the two fast, however long they are.
    MergedDevices(const DeviceListSnapshot &list, const DeviceListSnapshot &dropped);
    /// Sets the devices to add, if they were not known from the start.
    void setDevices(QList<ContactInfo> devices) { m_devices = std::move(devices); }

private:
    bool isAnswered() const { return m_answerForAll.has_value(); }
    bool areSeveralListed() const;
    /// `row` is the row of the listed device with the same MAC, or -1.
    void addOrReplace(int row, const ContactInfo &device, DuplicateAnswer answer);
    void add(const ContactInfo &device);
    void letGoOf(int device);

    DeviceList m_list;
    DeviceListSnapshot m_dropped;
    QList<ContactInfo> m_devices;
    int m_next = 0;
    bool m_changed = false;
    std::optional<bool> m_severalListed; ///< among all devices; known from the first question on
    std::optional<DuplicateAnswer> m_answerForAll;
};
