#pragma once

#include "import/ImportFault.h"
#include "model/ContactInfo.h"

#include <QStringList>
#include <QVector>

#include <vector>

/// What kinds of title row are known. The numbers are shared with the exporters where they export
/// the same kind.
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

/// The title row of a list file: which kind it is and where its columns stand.
class DeviceHeader
{
public:
    /// White space in `titles` makes no difference.
    explicit DeviceHeader(const QStringList &titles);

    HeaderType type() const { return m_type; }
    /// Why the rows below are no devices; None for a device header that has a MAC column.
    ImportFault fault() const { return m_fault; }
    /// Position in the file of each column of the standard header, -1 where the file lacks it.
    const QVector<int> &positions() const { return m_positions; }
    /// Gives an empty device what a row of the file holds; a column that is lacking gives nothing.
    void fill(ContactInfo &device, const std::vector<QString> &row) const;

    /// The standard header line of a type.
    static QString standardLine(HeaderType type);

private:
    HeaderType m_type;
    QVector<int> m_positions;
    ImportFault m_fault = ImportFault::None;
};
