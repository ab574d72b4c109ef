#pragma once

#include <QIODevice>

class QByteArray;
class QString;

/// Replaces the file's content, all of it or, when anything fails, nothing. False also when the
/// file is there and may not be written: replacing it would only take the folder's consent. `mode`
/// may add QIODevice::Text.
bool writeWholeFile(const QString &filePath, const QByteArray &content,
                    QIODevice::OpenMode mode = QIODevice::WriteOnly);
