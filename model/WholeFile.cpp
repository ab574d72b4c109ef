#include "model/WholeFile.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <utility>

namespace {

/// Of four thousand million names, the first is free; repeated failures have another cause.
constexpr int nameAttempts = 20;
constexpr int nameDigits = 36;

constexpr qint64 copiedAtOnce = qint64(1) << 20;

struct KnownFault
{
    FileCalls::Fault fault;
    const char *text;
};

/// The faults that a user can do something about.
constexpr std::array<KnownFault, 8> knownFaults = {{
    {FileCalls::Fault::DiskFull, QT_TRANSLATE_NOOP("WholeFile", "the disk is full")},
    {FileCalls::Fault::TooLarge, QT_TRANSLATE_NOOP("WholeFile", "the file is too large")},
    {FileCalls::Fault::ReadOnly, QT_TRANSLATE_NOOP("WholeFile", "the disk is read-only")},
    {FileCalls::Fault::Denied,
     QT_TRANSLATE_NOOP("WholeFile", "the permission to write is missing")},
    {FileCalls::Fault::NoFolder, QT_TRANSLATE_NOOP("WholeFile", "the folder does not exist")},
    {FileCalls::Fault::IsFolder, QT_TRANSLATE_NOOP("WholeFile", "a folder has the file's name")},
    {FileCalls::Fault::InUse,
     QT_TRANSLATE_NOOP("WholeFile", "the file is in use by another program")},
    {FileCalls::Fault::DiskError,
     QT_TRANSLATE_NOOP("WholeFile", "reading or writing the disk failed")},
}};

QString linkTarget(const QString &filePath)
{
    const QFileInfo info(filePath);
    const QString target = info.isSymLink() ? info.canonicalFilePath() : QString();
    return target.isEmpty() ? filePath : target;
}

WriteResult resultOf(FileCalls::Error error)
{
    return error == 0 ? WriteResult() : WriteResult::failed(WholeFile::reason(error));
}

} // namespace

WholeFile::WholeFile(const QString &filePath, Durability durability, Readers readers)
    : m_target(durability == Durability::Synced ? linkTarget(filePath) : filePath)
    , m_durability(durability)
{
    if (durability == Durability::Replaced || took(FileCalls::checkWritable(m_target)))
        open(readers);
}

WholeFile::~WholeFile()
{
    if (m_handle != FileCalls::noFile)
        FileCalls::close(m_handle);
    if (!m_newFile.isEmpty())
        FileCalls::remove(m_newFile);
}

void WholeFile::open(Readers readers)
{
    FileCalls::Error error = 0;
    int attempt = 0;
    do {
        m_newFile = m_target + QLatin1String(newFileMark) +
                    QString::number(QRandomGenerator::global()->generate(), nameDigits);
        error = FileCalls::create(m_newFile, readers == Readers::AsBefore ? m_target : QString(),
                                  m_handle);
    } while (FileCalls::fault(error) == FileCalls::Fault::Exists && ++attempt < nameAttempts);
    if (!took(error))
        m_newFile.clear(); // it is not ours to remove
    else if (readers == Readers::OwnerAndGroup)
        took(FileCalls::letGroupRead(m_handle));
}

bool WholeFile::write(const QByteArray &part)
{
    return m_error == 0 && took(FileCalls::write(m_handle, part.constData(), part.size()));
}

WriteResult WholeFile::commit()
{
    if (m_error == 0 && m_durability == Durability::Synced)
        took(FileCalls::sync(m_handle));
    // Some file systems, above all those of a network, report a full disk only here.
    if (m_handle != FileCalls::noFile)
        took(FileCalls::close(std::exchange(m_handle, FileCalls::noFile)));
    if (m_error == 0 && took(FileCalls::replace(m_newFile, m_target)))
        m_newFile.clear();
    if (m_error == 0 && m_durability == Durability::Synced)
        FileCalls::syncFolder(QFileInfo(m_target).path());
    return resultOf(m_error);
}

/// Keeps the first error of all calls. True when this one is no error.
bool WholeFile::took(FileCalls::Error error)
{
    if (m_error == 0)
        m_error = error;
    return error == 0;
}

QString WholeFile::reason(FileCalls::Error error)
{
    const FileCalls::Fault fault = FileCalls::fault(error);
    const auto known = std::find_if(knownFaults.begin(), knownFaults.end(),
                                    [fault](const KnownFault &one) { return one.fault == fault; });
    return known != knownFaults.end() ? tr(known->text) : qt_error_string(static_cast<int>(error));
}

WriteResult writeWholeFile(const QString &filePath, const QByteArray &content,
                           Durability durability, Readers readers)
{
    WholeFile file(filePath, durability, readers);
    file.write(content);
    return file.commit();
}

WriteResult writeWholeFile(const QString &filePath, QIODevice &source, Durability durability,
                           Readers readers)
{
    WholeFile file(filePath, durability, readers);
    source.seek(0);
    qint64 left = source.size();
    while (left > 0) {
        const QByteArray part = source.read(std::min(left, copiedAtOnce));
        if (part.isEmpty())
            return WriteResult::failed(source.errorString());
        if (!file.write(part))
            break;
        left -= part.size();
    }
    return file.commit();
}

WriteResult makeOwnersFolder(const QString &path)
{
    return resultOf(FileCalls::makeFolder(path));
}

WriteResult moveFile(const QString &from, const QString &to)
{
    const FileCalls::Error error = FileCalls::replace(from, to);
    if (FileCalls::fault(error) != FileCalls::Fault::OtherDisk)
        return resultOf(error);
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly))
        return WriteResult::failed(source.errorString());
    WriteResult copied = writeWholeFile(to, source, Durability::Synced, Readers::OwnerOnly);
    source.close();
    if (copied && !source.remove())
        return WriteResult::failed(source.errorString());
    return copied;
}
