#pragma once

#include "model/ImportTarget.h"
#include "storage/MergedDevices.h"

#include <memory>

class ParseBase;

/// A list with the devices of a file added to it.
class ImportedDevices : public MergedDevices
{
public:
    /// Adds the devices to `list`, for a list that replaces `present`. The importer makes its work
    /// files in `workFolder`, which ends in "/".
    ImportedDevices(const DeviceListSnapshot &list, const DeviceListSnapshot &present,
                    const QString &workFolder, const QString &path);
    ~ImportedDevices() override;

    Step step() override;
    QString reason() const override { return m_reason; }

    /// Removes the importer's work files.
    static void removeWorkFiles(const QString &workFolder);

private:
    void endReading();

    std::unique_ptr<ImportTarget> m_nobody; ///< what an import in one go would change
    std::unique_ptr<ParseBase> m_parser;    ///< until the file is read
    QString m_reason;
};
