#include "import/FileRewrite.h"

FileRewrite::FileRewrite(const QString &from, const QString &to, qint64 pieceSize)
    : m_from(from)
    , m_to(to)
    , m_pieceSize(pieceSize)
{
}

void FileRewrite::setFiles(const QString &from, const QString &to)
{
    close();
    m_from.setFileName(from);
    m_to.setFileName(to);
}

ImportFault FileRewrite::open()
{
    if (!m_from.isOpen() && !m_from.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return ImportFault::Unreadable;
    if (!m_to.isOpen() && !m_to.create())
        return ImportFault::NoWorkFiles;
    return ImportFault::None;
}

ImportFault FileRewrite::read(QByteArray &piece)
{
    const ImportFault fault = open();
    if (fault != ImportFault::None)
        return fault;
    piece = m_from.read(m_pieceSize);
    return m_from.error() == QFile::NoError ? ImportFault::None : ImportFault::Unreadable;
}

ImportFault FileRewrite::write(const QByteArray &bytes)
{
    return m_to.writeWhole(bytes) ? ImportFault::None : ImportFault::NoWorkFiles;
}

void FileRewrite::close()
{
    m_from.close();
    m_to.close();
}
