#pragma once

#include "model/ImportTarget.h"
#include "storage/MergedDevices.h"

#include <memory>

class ParseBase;

/// A list with the devices of a file added to it.
class ImportedDevices : public MergedDevices, public ImportTarget
{
public:
    /// The importer makes its work files in `workFolder`, which ends in "/".
    ImportedDevices(const DeviceListSnapshot &list, const QString &workFolder, const QString &path);
    ~ImportedDevices() override;

    Step step() override;
    QString reason() const override { return m_reason; }

    /// See ImportTarget. The list aside is already the one to be added to.
    bool clearOld() override { return true; }
    void addContacts(const QList<ContactInfo> &contacts) override { setDevices(contacts); }

    /// Removes the importer's work files.
    static void removeWorkFiles(const QString &workFolder);

private:
    std::unique_ptr<ParseBase> m_parser; ///< until the file is read
    QString m_reason;
};
