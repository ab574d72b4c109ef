#pragma once

#include "import/ImportFault.h"
#include "model/ContactInfo.h"

#include <QStringList>
#include <QVector>

#include <vector>

/// The known kinds of title row. A kind that is also exported has the number of its ExportType.
enum HeaderType : int {
    PhonebookHeader = 2,
    OfficeHeader = 3,
    ChineseOfficeHeader = 4,
    BusinessHeader = 5,
    ChineseBusinessHeader = 6,
    MailHeader = 7,
    EnglishDeviceHeader = 8,
    ChineseDeviceHeader = 9,
};

/// The title row of a list file: its kind and the positions of its columns.
class DeviceHeader
{
public:
    /// Superfluous white space in `titles` makes no difference.
    explicit DeviceHeader(const QStringList &titles);

    HeaderType type() const { return m_type; }
    /// Why the rows below are not devices; None for a device header with a MAC column.
    ImportFault fault() const { return m_fault; }
    /// Fills an empty device from a row of the file. A missing column leaves its field empty.
    void fill(ContactInfo &device, const std::vector<QString> &row) const;

    /// The standard header line of a type.
    static QString standardLine(HeaderType type);

private:
    HeaderType m_type;
    QVector<int> m_positions; ///< in the file, of each standard column; -1 where it is missing
    ImportFault m_fault = ImportFault::None;
};
