#pragma once

#include "import/ParseBase.h"
#include "import/csv_parser.h"

#include <QStringList>

#include <memory>
#include <vector>

class DeviceHeader;
class ImportTarget;
class TextSource;

/// Imports a device list file: UTF-8, UTF-16 with a byte-order mark or the region's legacy
/// encoding; an English or a Chinese title row; columns in any order. GUI thread.
///
/// Reads the file through copies in the work folder, see TextSource. The next import or
/// removeWorkFiles() removes them.
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

    void begin(const QString &sourcePath) override;
    Reading readOn() override;
    QList<ContactInfo> takeDevices() override;
    QString encoding() const override { return m_encoding; }
    ImportFault fault() const override { return m_fault; }

private:
    enum class Phase { Idle, Text, Titles, Rows, Done, Failed };

    void start(const QString &sourcePath, const QString &encodingName);
    void finish(Phase phase, ImportFault fault);
    Reading reading() const;
    void readText();
    void readTitles();
    void readRows();
    void readRow();
    QStringList fields() const;
    bool isBlank() const;

    ImportTarget &m_target;
    QString m_workFolder;
    Phase m_phase = Phase::Idle;
    ImportFault m_fault = ImportFault::None;
    QString m_encoding;
    std::unique_ptr<TextSource> m_text;
    std::unique_ptr<csv_parser> m_reader;
    std::unique_ptr<DeviceHeader> m_header;
    csv_row m_row;                 ///< the row read last, without line ends
    csv_row m_rowAbove;            ///< the one before it
    std::vector<QString> m_fields; ///< the texts of m_row
    QList<ContactInfo> m_devices;
};
