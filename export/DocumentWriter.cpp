#include "export/DocumentWriter.h"

#include "export/ProvisioningDocument.h"
#include "model/MacAddress.h"
#include "model/PhoneFamily.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <atomic>
#include <thread>

namespace {

/// More threads only block each other: a folder takes one new name at a time.
constexpr unsigned mostThreads = 8;

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
constexpr auto everybody = ownerOnly | QFile::ExeOwner | QFile::ReadGroup | QFile::WriteGroup |
                           QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

/// The age at which an unfinished file is one that nobody writes any more.
constexpr qint64 leftOverSeconds = 60;

/// The MAC in a document's name, in its look-up form; empty for any other name.
QString documentMac(const QString &fileName)
{
    static const QRegularExpression usualName(QStringLiteral("\\Acfg([0-9a-f]{12})\\.xml\\z"));
    const QRegularExpressionMatch match = usualName.match(fileName);
    return match.captured(1);
}

/// Removes the unfinished files of a run that was killed.
void removeLeftOvers(const QString &folder)
{
    const QString mark = QLatin1String(WholeFile::newFileMark);
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-leftOverSeconds);
    QDirIterator files(folder, {QLatin1String("cfg*") + mark + QLatin1Char('*')}, QDir::Files);
    while (files.hasNext()) {
        files.next();
        if (!documentMac(files.fileName().section(mark, 0, 0)).isEmpty() &&
            files.fileInfo().lastModified() < before)
            QFile::remove(files.filePath());
    }
}

} // namespace

/// One run of all threads, which share the rows out. Each row's file and outcome are one thread's.
class DocumentWriter::Run
{
public:
    explicit Run(const DocumentWriter &writer)
        : outcomes(static_cast<std::size_t>(writer.m_list.size()), Outcome::None)
        , m_writer(writer)
    {
    }

    void work(const std::function<void(int)> &progress)
    {
        const int count = static_cast<int>(outcomes.size());
        for (int row = m_next++; row < count && !m_hasFailed; row = m_next++) {
            if (progress)
                progress(row);
            QString why;
            Outcome &outcome = outcomes[static_cast<std::size_t>(row)];
            outcome = m_writer.writeRow(row, why);
            // Only the first failure gives the reason.
            if (outcome == Outcome::Failed && !m_hasFailed.exchange(true))
                reason = why;
        }
    }

    std::vector<Outcome> outcomes;
    QString reason;

private:
    const DocumentWriter &m_writer;
    std::atomic<int> m_next{0};
    std::atomic<bool> m_hasFailed{false};
};

DocumentWriter::DocumentWriter(const QString &folder, const DeviceListSnapshot &list)
    : m_folder(folder)
    , m_list(list)
    , m_readers(FileCalls::handsGroupOn(folder) ? Readers::OwnerAndGroup : Readers::OwnerOnly)
    , m_group(QFileInfo(folder).groupId())
{
}

std::vector<DocumentWriter::Outcome> DocumentWriter::write(const std::function<void(int)> &progress)
{
    removeLeftOvers(m_folder);
    Run run(*this);
    const unsigned processors = std::thread::hardware_concurrency();
    std::vector<std::thread> helpers(std::clamp(processors, 1U, mostThreads) - 1);
    for (std::thread &helper : helpers)
        helper = std::thread([&run] { run.work({}); });
    run.work(progress);
    for (std::thread &helper : helpers)
        helper.join();
    m_reason = run.reason;
    return run.outcomes;
}

DocumentWriter::Outcome DocumentWriter::writeRow(int row, QString &reason) const
{
    const ContactInfo &device = m_list.infoAt(row);
    if (!isMac(device.mac))
        return Outcome::NoMac;
    const QString mac = bareMac(device.mac);
    if (m_list.rowOfBareMac(mac) != row)
        return Outcome::Repeated;
    const QString path = m_folder + QLatin1String("/cfg") + mac + QLatin1String(".xml");
    const PhoneFamily &family = familyOfModel(device.product.trimmed());
    const QByteArray document = provisioningDocument(device, family.document);
    if (holds(path, document))
        return Outcome::Unchanged;
    const WriteResult result = writeWholeFile(path, document, Durability::Replaced, m_readers);
    if (result)
        return Outcome::Written;
    reason = tr("%1 can not be written: %2.").arg(QDir::toNativeSeparators(path), result.reason());
    return Outcome::Failed;
}

/// Whether the folder has the document; also corrects who may read it.
bool DocumentWriter::holds(const QString &path, const QByteArray &document) const
{
    const QFileInfo info(path);
    if (info.isSymLink() || !info.isFile() || info.size() != document.size())
        return false;
    const bool isForGroup = m_readers == Readers::OwnerAndGroup;
    if (isForGroup && info.groupId() != m_group)
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.readAll() != document)
        return false;
    const auto wanted = isForGroup ? ownerOnly | QFile::ReadGroup : ownerOnly;
    return (info.permissions() & everybody) == wanted || file.setPermissions(wanted);
}

int DocumentWriter::removeOthers()
{
    int removed = 0;
    QDirIterator files(m_folder, QDir::Files | QDir::NoSymLinks | QDir::Hidden | QDir::System);
    while (files.hasNext()) {
        files.next();
        const QString mac = documentMac(files.fileName());
        if (mac.isEmpty() || m_list.rowOfBareMac(mac) >= 0)
            continue;
        QFile file(files.filePath());
        if (!file.remove()) {
            m_reason = tr("%1 can not be removed: %2.")
                           .arg(QDir::toNativeSeparators(file.fileName()), file.errorString());
            break;
        }
        ++removed;
    }
    return removed;
}
