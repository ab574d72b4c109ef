#pragma once

#include "net/FileNameLocks.h"

#include <QHash>
#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>

/// The folder of the documents that telephones fetch, "HTTPD/MACCFG". Any thread.
///
/// Whoever may ask chooses the names, so the folder has a bound: beyond, documents under odd names
/// are removed first, then the oldest. What was removed is made again when a telephone asks.
class DocumentFolder
{
public:
    /// So many documents may lie in the folder, or four for each device, whichever is more.
    static constexpr int usualBound = 1000;

    /// Below `baseDir`, which ends in "/".
    explicit DocumentFolder(const QString &baseDir);

    QString path() const { return m_path; }
    /// Makes the folder if it is missing, for its owner only: the documents hold passwords.
    void make() const;

    /// Waits for the name's lock, under which its document is written, read and removed.
    std::unique_lock<std::mutex> lock(const QString &fileName) { return m_locks.lock(fileName); }

    /// What a document was made of.
    struct Origin
    {
        int type = 0;        ///< the export's
        quint64 version = 0; ///< the list's, or 0 for one that must not be used again
    };
    /// True when the document was made of just that and nobody has touched it since. Under the
    /// name's lock, as the next two.
    bool isCurrent(const QString &fileName, const Origin &origin);
    bool has(const QString &fileName) const;
    /// A document was written; `isNew` when there was none of this name.
    void written(const QString &fileName, const Origin &origin, bool isNew);

    /// Removes documents beyond the bound; at once when there are none, or when another thread is
    /// at it. Takes a while; holds no lock but, one after the other, those of the names removed.
    void keepBound(const std::function<int()> &deviceCount, const std::function<bool()> &stop);

    /// Has the next keepBound() remove all documents there are.
    void clear() { m_isToBeCleared = true; }
    bool isToBeCleared() const { return m_isToBeCleared; }

    /// True for "cfg" + MAC + ".xml".
    static bool isUsualName(const QString &fileName);

private:
    /// By what a file is seen to have been touched. Not by Qt, which has the system look up the
    /// time zone each time, with one lock for all threads.
    struct Look
    {
        Look() = default;
        explicit Look(const QString &path);
        bool operator==(const Look &other) const
        {
            return isThere && other.isThere && time == other.time && size == other.size;
        }

        std::int64_t time = 0; ///< of the last change, in the file system's own units
        std::uintmax_t size = 0;
        bool isThere = false;
    };
    struct Known
    {
        Origin origin;
        Look look;
    };

    QString filePath(const QString &fileName) const { return m_path + QLatin1Char('/') + fileName; }
    void removeBeyond(int bound, const std::function<bool()> &stop);
    void remove(const QString &fileName);

    QString m_baseDir;
    QString m_path;
    FileNameLocks m_locks;
    std::atomic<int> m_count; ///< documents here, as far as known
    std::atomic<bool> m_removing{false};
    std::atomic<bool> m_isToBeCleared{false};
    std::mutex m_knownMutex;
    QHash<QString, Known> m_known; ///< documents that were written; guarded by m_knownMutex
};
