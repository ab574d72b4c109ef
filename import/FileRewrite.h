#pragma once

#include "import/ImportFault.h"
#include "import/WorkFile.h"

/// A file that is read in pieces, and the work file to which what becomes of them is written. Owns
/// both and closes them in the end. What goes wrong is told as the import's fault;
/// ImportFault::None is a success.
class FileRewrite
{
public:
    FileRewrite(const QString &from, const QString &to, qint64 pieceSize);

    /// Closes both files and goes on with these.
    void setFiles(const QString &from, const QString &to);
    /// Opens both files, unless they are open.
    ImportFault open();
    /// Puts the next piece in `piece`, nothing at the end of the file. Opens the files as open()
    /// does.
    ImportFault read(QByteArray &piece);
    /// Writes these bytes behind those before them.
    ImportFault write(const QByteArray &bytes);
    /// What was written so far, in bytes.
    qint64 written() const { return m_to.size(); }
    void close();

private:
    QFile m_from;
    WorkFile m_to;
    qint64 m_pieceSize;
};
