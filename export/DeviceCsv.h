#pragma once

#include "model/ContactInfo.h"

/// Writes a device list file: `header` and CR LF, then a row for each device, ended by `rowEnd`.
/// Fields are written unchanged, without quotes, escapes or trimming, so a field that holds a
/// comma, a quote or a line break breaks its row.
///
/// Appends ".csv" to `filePath`, even to one that ends so. Writes no byte-order mark. False for an
/// unknown codec, one that cannot encode the header, or an empty path, and when the file cannot be
/// written: the file is then unchanged, and `reason` says why, for the user.
bool writeDeviceCsv(const QString &codecName, const QString &filePath,
                    const QList<ContactInfo> &devices, const QString &header, const QString &rowEnd,
                    QString &reason);
