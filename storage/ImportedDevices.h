#pragma once

#include "model/ImportTarget.h"
#include "storage/MergedDevices.h"

#include <memory>

class ParseBase;

/// A list with the devices of a file added to it.
class ImportedDevices : public MergedDevices
{
public:
    /// Adds the devices of the file at `path` to `list`. `dropped` is the list that the result
    /// takes the place of, unless it is `list`. The work files are in `workFolder`, which ends in
    /// "/".
    ImportedDevices(const DeviceListSnapshot &list, const DeviceListSnapshot &dropped,
                    const QString &workFolder, const QString &path);
    ~ImportedDevices() override;

    Step step() override;
    QString reason() const override { return m_reason; }

    /// Removes the importer's work files.
    static void removeWorkFiles(const QString &workFolder);

private:
    void endReading();

    std::unique_ptr<ImportTarget> m_nobody; ///< the importer's target; reading leaves it alone
    std::unique_ptr<ParseBase> m_parser;    ///< null once the file is read
    QString m_reason;
};
