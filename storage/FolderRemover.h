#pragma once

#include <QDirIterator>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

/// Removes folders full of files without making the window wait. GUI thread.
class FolderRemover : public QObject
{
    Q_OBJECT
public:
    explicit FolderRemover(QObject *parent = nullptr);

    /// Removes what bears this path, a file, a link or a folder with all that is in it. The path is
    /// free when this returns, where the system allows; what is left is removed bit by bit. What
    /// cannot be removed stays, silently.
    void remove(const QString &path);

private:
    void removeSome();

    QStringList m_folders; ///< renamed, and to be removed
    std::unique_ptr<QDirIterator> m_files;
    QTimer m_turn;
};
