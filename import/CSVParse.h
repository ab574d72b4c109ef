#pragma once

#include "import/ParseBase.h"
#include "import/csv_parser.h"

#include <QStringList>

class DeviceHeader;
class ImportTarget;
struct ContactInfo;

/// Imports a device list file: UTF-8 or the legacy encoding of the region, an English or a Chinese
/// title row, columns in any order. GUI thread.
///
/// The file is read through copies in the work folder, "tmp.csv" as it is, "tmp1.csv" converted and
/// "tmp2.csv" as it is parsed, which the next import or removeWorkFiles() removes.
class CSVParse : public ParseBase
{
    Q_OBJECT
public:
    /// See ParseFactory::createParser().
    CSVParse(ImportTarget &target, const QString &workFolder);
    ~CSVParse() override;

    QString legacyEncodingName() const override;
    QString workFolder() const override { return m_workFolder; }
    bool convert(const QString &path, const QString &fromEncoding,
                 const QString &toEncoding) override;
    bool import(const QString &sourcePath, const QString &encodingName) override;
    QString encodingOf(const QString &sourcePath) const override;
    void removeWorkFiles() override;

private:
    QString workFile(const char *name) const;
    bool prepare(const QString &sourcePath, const QString &encodingName);
    bool copyText(const QString &from, const QString &to) const;
    QStringList readRow(csv_parser &reader);
    QList<ContactInfo> readDevices(csv_parser &reader, const DeviceHeader &header);

    ImportTarget &m_target;
    QString m_workFolder;
    csv_row m_rowAbove; ///< the row read last, without line ends
    QStringList m_fieldsAbove;
};
