#pragma once

#include "net/FileLook.h"
#include "net/FileNameLocks.h"

#include <QHash>
#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>

/// The folder of the documents that phones fetch, "HTTPD/MACCFG". Any thread.
///
/// Clients choose the names, so the folder has a bound. Beyond it, documents with unusual names are
/// removed first, then the oldest. A removed document is made again when a phone asks for it.
class DocumentFolder
{
public:
    /// The folder may hold this many documents, or four for each device, whichever is more.
    static constexpr int usualBound = 1000;

    /// The tree that the folder is in.
    static inline const QString rootName = QStringLiteral("HTTPD");

    /// The tree is below `baseDir`, which ends in "/".
    explicit DocumentFolder(const QString &baseDir);

    QString path() const { return m_path; }
    /// Makes the folder if it is missing, for its owner only: the documents hold passwords.
    void make() const;

    /// Waits for the name's lock, under which its document is written, read and removed.
    std::unique_lock<std::mutex> lock(const QString &fileName) { return m_locks.lock(fileName); }

    /// What a document was made from.
    struct Origin
    {
        int type = 0;        ///< of the export
        quint64 version = 0; ///< of the list, or 0 for a document that must not be used again
    };
    /// True when the document was made from exactly this, and `look` shows that it is unchanged
    /// since. Call under the name's lock, as the next one.
    bool isCurrent(const QString &fileName, const Origin &origin, const FileLook &look);
    /// Notes a document that was written; `isNew` when there was none of this name.
    void written(const QString &fileName, const Origin &origin, const FileLook &look, bool isNew);

    /// Removes the documents beyond the bound. Returns at once when there are none or when another
    /// thread removes them. Takes a while; holds only the locks of the document being removed.
    void keepBound(const std::function<int()> &deviceCount, const std::function<bool()> &stop);

    /// Makes the next keepBound() remove all documents.
    void clear() { m_clearing = Clearing::Wanted; }
    /// True until all documents that existed at clear() are gone.
    bool isToBeCleared() const { return m_clearing != Clearing::None; }

    /// True for "cfg" + MAC + ".xml".
    static bool isUsualName(const QString &fileName);

private:
    enum class Clearing { None, Wanted, UnderWay };
    struct Known
    {
        Origin origin;
        FileLook look;
    };

    QString filePath(const QString &fileName) const { return m_path + QLatin1Char('/') + fileName; }
    bool removeBeyond(int bound, const std::function<bool()> &stop);
    void remove(const QString &fileName);

    QString m_baseDir;
    QString m_path;
    FileNameLocks m_locks;
    std::atomic<int> m_count; ///< documents here, as far as known
    std::atomic<bool> m_removing{false};
    std::atomic<Clearing> m_clearing{Clearing::None};
    std::mutex m_knownMutex;
    QHash<QString, Known> m_known; ///< documents that were written; guarded by m_knownMutex
};
