#pragma once

#include <QFileDialog>

/// Lets the user choose a file or a folder. Always Qt's own dialog, as the system's would ignore
/// the labels.
class PathDialog : public QFileDialog
{
    Q_OBJECT
public:
    struct Labels
    {
        QString lookIn;
        QString fileName;
        QString fileType;
        QString accept;
        QString reject;
    };

    PathDialog(const QString &title, const Labels &labels, QWidget *parent);

    /// Runs the dialog. Returns the path chosen, or an empty one.
    QString ask();
};
