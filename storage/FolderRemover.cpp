#include "storage/FolderRemover.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int sliceMilliseconds = 5;
const QString oldSuffix = QStringLiteral(".old");

} // namespace

FolderRemover::FolderRemover(QObject *parent)
    : QObject(parent)
{
    connect(&m_turn, &QTimer::timeout, this, &FolderRemover::removeSome);
}

void FolderRemover::remove(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isDir() || info.isSymLink()) {
        QFile::remove(path);
        return;
    }
    // Renamed first, so that new files under this path do not interfere.
    const QString old = removeLeft(path);
    m_folders.append(QDir().rename(path, old) ? old : path);
    m_turn.start(0);
}

QString FolderRemover::removeLeft(const QString &path)
{
    QString old = path + oldSuffix;
    for (int i = 2; QFileInfo::exists(old); ++i) {
        if (!m_folders.contains(old))
            m_folders.append(old);
        old = path + oldSuffix + QString::number(i);
    }
    if (!m_folders.isEmpty())
        m_turn.start(0);
    return old;
}

void FolderRemover::removeSome()
{
    QElapsedTimer time;
    time.start();
    while (!m_folders.isEmpty() && time.elapsed() < sliceMilliseconds) {
        if (!m_files) {
            m_files = std::make_unique<QDirIterator>(m_folders.constFirst(),
                                                     QDir::Files | QDir::System | QDir::Hidden |
                                                         QDir::NoDotAndDotDot,
                                                     QDirIterator::Subdirectories);
        }
        if (m_files->hasNext()) {
            QFile::remove(m_files->next());
        } else {
            m_files.reset();
            QDir(m_folders.takeFirst()).removeRecursively();
        }
    }
    if (m_folders.isEmpty())
        m_turn.stop();
}
