#pragma once

#include <QFile>

/// A file in which an import keeps a copy of what it reads. As that holds passwords, only its owner
/// may read it.
class WorkFile : public QFile
{
public:
    using QFile::QFile;

    /// Makes the file anew, for writing.
    bool create();
    /// False when not every byte has reached the system.
    bool writeWhole(const QByteArray &bytes) { return write(bytes) == bytes.size(); }
};
