#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

/// Gives this process mounts of its own, which nobody else sees and which end with it. Called
/// before main(), as only a process with a single thread can enter a user namespace.
inline bool takeOwnMounts()
{
    // Our user is root inside the namespace.
    const QByteArray map = "0 " + QByteArray::number(geteuid()) + " 1";
    const QByteArray groupMap = "0 " + QByteArray::number(getegid()) + " 1";
    const auto write = [](const char *path, const QByteArray &text) {
        QFile file{QLatin1String(path)};
        return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
               file.write(text) == text.size();
    };
    const bool alone =
        unshare(CLONE_NEWNS) == 0 ||
        (unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && write("/proc/self/setgroups", "deny") &&
         write("/proc/self/uid_map", map) && write("/proc/self/gid_map", groupMap));
    return alone && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

inline const bool hasOwnMounts = takeOwnMounts();

/// A real file system in memory, with a folder of the program on it, that can be filled up. Where
/// isMounted() is false it is an ordinary folder, and the test is to be skipped.
class SmallDisk
{
public:
    explicit SmallDisk(int mebibytes)
    {
        const QByteArray size = "size=" + QByteArray::number(mebibytes) + "m,mode=0700";
        m_mounted = hasOwnMounts && mount("none", qPrintable(m_root.path()), "tmpfs",
                                          MS_NODEV | MS_NOSUID, size.constData()) == 0;
        QDir(m_root.path()).mkdir(QStringLiteral("program"));
    }
    ~SmallDisk()
    {
        if (m_mounted)
            umount2(qPrintable(m_root.path()), MNT_DETACH);
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool isMounted() const { return m_mounted; }
    /// Ends in "/".
    QString folder() const { return m_root.filePath(QStringLiteral("program/")); }

    /// Leaves room for this much more, in steps of 4 KiB.
    bool fill(int bytesLeft)
    {
        QFile filler(m_root.filePath(QStringLiteral("filler")));
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return false;
        const QByteArray block(4096, 'x');
        while (filler.write(block) == block.size()) {
        }
        return errno == ENOSPC && filler.resize(filler.size() - bytesLeft);
    }
    void empty() { QFile::remove(m_root.filePath(QStringLiteral("filler"))); }

private:
    QTemporaryDir m_root;
    bool m_mounted = false;
};
