#pragma once

#include <QFile>

/// A file in which an import keeps a copy of what it reads. The copy holds passwords, so only its
/// owner may read it.
class WorkFile : public QFile
{
public:
    using QFile::QFile;

    /// Creates the file anew and opens it for writing.
    bool create();
    /// False when not every byte has reached the system.
    bool writeWhole(const QByteArray &bytes) { return write(bytes) == bytes.size(); }
};
