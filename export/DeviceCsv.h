#pragma once

#include "model/ContactInfo.h"

/// Writes a device list file: `header` and CR LF, then a row a device, each ended by `rowEnd`.
/// Fields stand as they are, without quotes, escapes or trimming, so one that holds a comma, a
/// quote or a line break breaks its row.
///
/// ".csv" is appended to `filePath`, also where it stands already. No byte-order mark is written.
/// False for an unknown codec, an empty path, or when the file cannot be written, which then stays
/// as it was; `reason` then says why, for the user.
bool writeDeviceCsv(const QString &codecName, const QString &filePath,
                    const QList<ContactInfo> &devices, const QString &header, const QString &rowEnd,
                    QString &reason);
