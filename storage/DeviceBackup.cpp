#include "storage/DeviceBackup.h"

#include "model/ContactFields.h"
#include "model/CsvField.h"
#include "storage/DatabaseFiles.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int keptLists = 30;
constexpr int keptDatabases = 10;
constexpr qint64 pieceSize = qint64(1) << 20; // compared or written at once
const QString lineEnd = QStringLiteral("\r\n");

/// The endings of the files that exist.
QStringList partsOf(const QString &filePath)
{
    QStringList parts;
    for (const char *const part : databaseParts) {
        if (QFile::exists(filePath + QLatin1String(part)))
            parts.append(QLatin1String(part));
    }
    return parts;
}

/// The import refuses a file with zero bytes.
QString withoutZeros(QString field)
{
    return field.remove(QChar(QChar::Null));
}

bool holds(const QString &filePath, QIODevice &content)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly) || file.size() != content.size() || !content.seek(0))
        return false;
    while (!file.atEnd()) {
        const QByteArray part = file.read(pieceSize);
        if (part.isEmpty() || part != content.read(part.size()))
            return false;
    }
    return true;
}

WriteResult copyFile(const QString &from, const QString &to)
{
    QFile source(from);
    return source.open(QIODevice::ReadOnly)
               ? writeWholeFile(to, source, Durability::Synced, Readers::OwnerOnly)
               : WriteResult::failed(source.errorString());
}

bool completed(DeviceBackup::Writing &writing)
{
    using Step = DeviceBackup::Writing::Step;
    Step step = Step::More;
    while (step == Step::More)
        step = writing.step();
    return step == Step::Done;
}

} // namespace

DeviceBackup::DeviceBackup(const QString &directory)
    : m_folder(directory + folderName)
{
}

bool DeviceBackup::write(const QList<ContactInfo> &devices)
{
    QByteArray text = csv(devices);
    return completed(*writing(text));
}

std::unique_ptr<DeviceBackup::Writing> DeviceBackup::writing(QByteArray &csv)
{
    return std::make_unique<Writing>(
        *this, std::make_unique<QBuffer>(&csv),
        Kind{QStringLiteral("devices"), QStringLiteral("csv"), keptLists});
}

bool DeviceBackup::copyDatabase(const QString &filePath)
{
    const QFileInfo info(filePath);
    const Kind kind = {info.completeBaseName(), info.suffix(), keptDatabases};
    const QStringList parts = partsOf(filePath);
    if (parts.size() <= 1) {
        Writing copy(*this, std::make_unique<QFile>(filePath), kind);
        return completed(copy);
    }
    if (!makeFolder())
        return false;
    const QString copy = freePath(kind);
    for (const QString &part : parts) {
        if (!took(copyFile(filePath + part, copy + part))) {
            removeDatabase(copy);
            return false;
        }
    }
    settle(copy, kind);
    return true;
}

/// Called when the newest file is complete; removes the oldest beyond the number kept.
void DeviceBackup::settle(const QString &path, const Kind &kind)
{
    m_lastPath = path;
    QStringList others = namesOf(kind);
    others.removeOne(QFileInfo(path).fileName());
    // The order stays that of the making, also after the clock was set back. Some file systems keep
    // times to two seconds.
    QDateTime time = QDateTime::currentDateTime();
    if (!others.isEmpty()) {
        const QFileInfo newest(m_folder + QLatin1Char('/') + others.first());
        time = std::max(time, newest.lastModified().addSecs(2));
    }
    QFile file(path);
    if (file.open(QIODevice::ReadWrite))
        file.setFileTime(time, QFileDevice::FileModificationTime);
    while (others.size() >= kind.kept)
        removeDatabase(m_folder + QLatin1Char('/') + others.takeLast());
}

DeviceBackup::Writing::Writing(DeviceBackup &backup, std::unique_ptr<QIODevice> content,
                               const Kind &kind)
    : m_backup(backup)
    , m_content(std::move(content))
    , m_kind(kind)
    , m_names(backup.namesOf(kind))
{
}

DeviceBackup::Writing::Step DeviceBackup::Writing::step()
{
    if (!m_content->isOpen() && !m_content->open(QIODevice::ReadOnly)) {
        m_backup.took(WriteResult::failed(m_content->errorString()));
        return Step::Failed;
    }
    switch (m_phase) {
    case Phase::Comparing:
        return compare();
    case Phase::Writing:
        return write();
    case Phase::Ending:
        return end();
    }
    return Step::Failed;
}

/// Compares with one file. A file with the same contents becomes the newest, and nothing is
/// written.
DeviceBackup::Writing::Step DeviceBackup::Writing::compare()
{
    if (m_names.isEmpty()) {
        if (!m_backup.makeFolder())
            return Step::Failed;
        m_path = m_backup.freePath(m_kind);
        m_content->seek(0);
        m_file = std::make_unique<WholeFile>(m_path, Durability::Synced, Readers::OwnerOnly);
        m_phase = Phase::Writing;
        return Step::More;
    }
    const QString path = m_backup.m_folder + QLatin1Char('/') + m_names.takeFirst();
    // With a journal beside it, the same file is a different database.
    if (partsOf(path).size() > 1 || !holds(path, *m_content))
        return Step::More;
    m_backup.settle(path, m_kind);
    return Step::Done;
}

DeviceBackup::Writing::Step DeviceBackup::Writing::write()
{
    const QByteArray part = m_content->read(pieceSize);
    if (part.isEmpty() && !m_content->atEnd()) {
        m_backup.took(WriteResult::failed(m_content->errorString()));
        return Step::Failed;
    }
    if (part.isEmpty() || !m_file->write(part))
        m_phase = Phase::Ending; // also after a failure, which commit() reports
    return Step::More;
}

DeviceBackup::Writing::Step DeviceBackup::Writing::end()
{
    if (!m_backup.took(m_file->commit()))
        return Step::Failed;
    m_backup.settle(m_path, m_kind);
    return Step::Done;
}

QByteArray DeviceBackup::csv(const QList<ContactInfo> &devices)
{
    QByteArray text = titleRow();
    for (const ContactInfo &device : devices)
        text += row(device);
    return text;
}

QByteArray DeviceBackup::titleRow()
{
    return (englishCsvHeader() + lineEnd).toUtf8();
}

QByteArray DeviceBackup::row(const ContactInfo &device)
{
    QStringList fields;
    for (const ContactField &field : contactCsvFields())
        fields.append(csvField(withoutZeros(inOneLine(device.*field.member))));
    return (fields.join(QLatin1Char(',')) + lineEnd).toUtf8();
}

bool DeviceBackup::putAside(const QString &filePath)
{
    if (!QFile::exists(filePath))
        return true;
    if (!makeFolder())
        return false;
    const QFileInfo info(filePath);
    const QString target =
        freePath({info.completeBaseName() + QLatin1String("-unreadable"), info.suffix(), 0});
    QStringList moved;
    const QStringList parts = partsOf(filePath);
    for (const QString &part : parts) {
        if (!took(moveFile(filePath + part, target + part))) {
            for (const QString &back : moved)
                static_cast<void>(moveFile(target + back, filePath + back));
            return false;
        }
        moved.append(part);
    }
    return true;
}

bool DeviceBackup::makeFolder()
{
    if (!took(makeOwnersFolder(m_folder)))
        return false;
    // If this fails, the files inside are still readable by their owner alone.
    QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return true;
}

bool DeviceBackup::took(const WriteResult &result)
{
    m_errorText = result.reason();
    return bool(result);
}

/// The path of a new file, named after the present time.
QString DeviceBackup::freePath(const Kind &kind) const
{
    // The C locale writes the digits that namesOf() matches, whatever the system's language is.
    const QString time =
        QLocale::c().toString(QDateTime::currentDateTime(), QStringLiteral("yyyyMMdd-hhmmss"));
    const QString stem = m_folder + QLatin1Char('/') + kind.stem + QLatin1Char('-') + time;
    QString path = stem + QLatin1Char('.') + kind.suffix;
    for (int i = 2; !partsOf(path).isEmpty(); ++i)
        path = QStringLiteral("%1-%2.%3").arg(stem, QString::number(i), kind.suffix);
    return path;
}

/// Newest first. Leaves out the user's own files in the folder.
QStringList DeviceBackup::namesOf(const Kind &kind) const
{
    const QRegularExpression pattern(
        QStringLiteral("^%1-\\d{8}-\\d{6}(-\\d+)?\\.%2$")
            .arg(QRegularExpression::escape(kind.stem), QRegularExpression::escape(kind.suffix)));
    return QDir(m_folder).entryList(QDir::Files, QDir::Time).filter(pattern);
}
