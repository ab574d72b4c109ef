#pragma once

#include "model/WholeFile.h"
#include "net/RequestRows.h"

#include <QByteArray>
#include <QString>

#include <vector>

/// The request log on the disk: "requests.csv" in a folder of its own, which only its owner can
/// read. When the file is full, it becomes "requests-1.csv", the file that had that name becomes
/// "requests-2.csv", and so on; the oldest is removed.
///
/// Any thread, one at a time. A call takes as long as the disk does.
class RequestLogFile
{
public:
    static constexpr qint64 fullSize = 5'000'000; ///< in bytes
    static constexpr int files = 5;               ///< in all

    /// The folder is made with the first row.
    explicit RequestLogFile(const QString &folder);

    /// Adds the rows. Rows that cannot be written are left out; the next rows that can be are
    /// preceded by one that counts them.
    WriteResult add(const std::vector<LogRow> &rows);

    /// One row, with its line end; UTF-8. What a phone sent can neither break the row nor pass for
    /// a formula in a spreadsheet. The query of an address that it asked for is left out.
    static QByteArray text(const LogRow &row);
    /// The names of the columns.
    static QByteArray titleRow();

private:
    FileCalls::Error write(const QByteArray &text);
    FileCalls::Error open(qint64 more, FileCalls::Handle &file, qint64 &size);
    FileCalls::Error makeRoom();
    QString path(int number) const;

    QString m_folder;
    LogRow m_leftOut; ///< requests whose rows could not be written
};
