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

    /// Removes a file, a link, or a folder with all its contents. Where the system allows, the path
    /// is free when this returns; a folder's contents are then removed in slices. Ignores what
    /// cannot be removed.
    void remove(const QString &path);
    /// Removes what earlier removals of this path left, as the program ended before they did.
    /// Returns the path to which the next removal renames it.
    QString removeLeft(const QString &path);

private:
    void removeSome();

    QStringList m_folders; ///< to be removed; renamed where possible
    std::unique_ptr<QDirIterator> m_files;
    QTimer m_turn;
};
