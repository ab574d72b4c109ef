#include "net/DocumentFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr int documentsPerDevice = 4;

/// The count before the folder has been looked at.
constexpr int unknownCount = std::numeric_limits<int>::max() / 2;

constexpr int prefixLength = 3; ///< of "cfg"
constexpr int macLength = 12;

struct Document
{
    bool isUsual;
    qint64 time;
    QString name;

    /// The document to be removed first comes first.
    bool operator<(const Document &other) const
    {
        return std::pair(isUsual, time) < std::pair(other.isUsual, other.time);
    }
};

/// Makes a folder for its owner only.
void makePrivate(const QString &path)
{
    if (QDir().mkdir(path))
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

std::vector<Document> documentsIn(const QString &path)
{
    std::vector<Document> documents;
    const QFileInfoList files =
        QDir(path).entryInfoList(QDir::Files | QDir::Hidden | QDir::System, QDir::NoSort);
    documents.reserve(static_cast<std::size_t>(files.size()));
    for (const QFileInfo &file : files) {
        const QString name = file.fileName();
        documents.push_back(
            {DocumentFolder::isUsualName(name), file.lastModified().toMSecsSinceEpoch(), name});
    }
    return documents;
}

} // namespace

DocumentFolder::DocumentFolder(const QString &baseDir)
    : m_baseDir(baseDir)
    , m_path(baseDir + rootName + QLatin1String("/MACCFG"))
    , m_count(unknownCount)
{
}

void DocumentFolder::make() const
{
    if (QFileInfo::exists(m_path))
        return;
    QDir().mkpath(m_baseDir);
    makePrivate(m_baseDir + rootName);
    makePrivate(m_path);
}

bool DocumentFolder::isCurrent(const QString &fileName, const Origin &origin, const FileLook &look)
{
    if (origin.version == 0)
        return false;
    const std::lock_guard<std::mutex> guard(m_knownMutex);
    const auto known = m_known.constFind(fileName);
    return known != m_known.constEnd() && known->origin.version == origin.version &&
           known->origin.type == origin.type && known->look == look;
}

void DocumentFolder::written(const QString &fileName, const Origin &origin, const FileLook &look,
                             bool isNew)
{
    if (isNew)
        ++m_count;
    if (origin.version == 0)
        return;
    const std::lock_guard<std::mutex> guard(m_knownMutex);
    m_known.insert(fileName, {origin, look});
}

bool DocumentFolder::isUsualName(const QString &fileName)
{
    const auto isHexDigit = [](QChar c) {
        const QChar lower = c.toLower();
        return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
               (lower >= QLatin1Char('a') && lower <= QLatin1Char('f'));
    };
    const QString mac = fileName.mid(prefixLength, macLength);
    return mac.size() == macLength && std::all_of(mac.begin(), mac.end(), isHexDigit) &&
           fileName == QLatin1String("cfg") + mac + QLatin1String(".xml");
}

void DocumentFolder::keepBound(const std::function<int()> &deviceCount,
                               const std::function<bool()> &stop)
{
    if (m_count <= usualBound && m_clearing != Clearing::Wanted)
        return;
    const int devices = std::min(deviceCount(), std::numeric_limits<int>::max() / 8);
    const int bound = std::max(usualBound, documentsPerDevice * devices);
    // Repeats for documents that other threads added meanwhile: they leave the removal to this one.
    while ((m_count > bound || m_clearing == Clearing::Wanted) && !stop() &&
           !m_removing.exchange(true)) {
        Clearing clearing = Clearing::Wanted;
        const bool all = m_clearing.compare_exchange_strong(clearing, Clearing::UnderWay);
        const bool done = removeBeyond(all ? 0 : bound, stop);
        clearing = Clearing::UnderWay; // unless it is wanted anew
        m_clearing.compare_exchange_strong(clearing, done ? Clearing::None : Clearing::Wanted);
        m_removing = false;
    }
}

/// False when it was stopped before all was done.
bool DocumentFolder::removeBeyond(int bound, const std::function<bool()> &stop)
{
    m_count = 0; // a document added during the look counts twice, which does no harm
    std::vector<Document> documents = documentsIn(m_path);
    const int found = static_cast<int>(documents.size());
    // A tenth more than necessary, so that the folder is not read again for every new document.
    const int superfluous = found > bound ? found - bound + bound / 10 : 0;
    const auto end = documents.begin() + superfluous;
    std::partial_sort(documents.begin(), end, documents.end());
    auto document = documents.begin();
    for (; document != end && !stop(); ++document)
        remove(document->name);
    m_count += static_cast<int>(documents.end() - document);
    return document == end;
}

void DocumentFolder::remove(const QString &fileName)
{
    // The file may be an unfinished one: it has its document's name with an ending added, and is
    // under the document's lock.
    const auto nameLocks = m_locks.lock(fileName, fileName.section(QLatin1Char('.'), 0, -2));
    QFile::remove(filePath(fileName));
    const std::lock_guard<std::mutex> guard(m_knownMutex);
    m_known.remove(fileName);
}
