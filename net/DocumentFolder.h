#pragma once

#include "net/FileLook.h"
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
    /// True when the document, which looks so, was made of just that and nobody has touched it
    /// since. Under the name's lock, as the next.
    bool isCurrent(const QString &fileName, const Origin &origin, const FileLook &look);
    /// A document was written, and looks so; `isNew` when there was none of this name.
    void written(const QString &fileName, const Origin &origin, const FileLook &look, bool isNew);

    /// Removes documents beyond the bound; at once when there are none, or when another thread is
    /// at it. Takes a while; holds no lock but, one after the other, those of the names removed.
    void keepBound(const std::function<int()> &deviceCount, const std::function<bool()> &stop);

    /// Has the next keepBound() remove all documents there are.
    void clear() { m_clearing = Clearing::Wanted; }
    /// True until all that there were then are gone.
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
