#pragma once

#include "import/ImportFault.h"
#include "import/WorkFile.h"

/// A file that is read in pieces, and the work file to which the changed pieces are written. Owns
/// both and closes them in the end. A failure is returned as the import's fault; ImportFault::None
/// is a success.
class FileRewrite
{
public:
    FileRewrite(const QString &from, const QString &to, qint64 pieceSize);

    /// Closes both files and continues with these.
    void setFiles(const QString &from, const QString &to);
    /// Opens both files, unless they are open.
    ImportFault open();
    /// Reads the next piece into `piece`, which is empty at the end of the file. Opens the files as
    /// open() does.
    ImportFault read(QByteArray &piece);
    /// Appends these bytes to the work file.
    ImportFault write(const QByteArray &bytes);
    /// The number of bytes written so far.
    qint64 written() const { return m_to.size(); }
    void close();

private:
    QFile m_from;
    WorkFile m_to;
    qint64 m_pieceSize;
};
