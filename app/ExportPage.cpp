#include "app/ExportPage.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

ExportPage::ExportPage(QWidget *parent)
    : PathPage({QStringLiteral("export"), tr("Export file"), tr("Export to"), tr("Select path"),
                tr("Export")},
               parent)
{
}

QString ExportPage::startFolder() const
{
    if (QFileInfo(path()).isDir())
        return path();
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}
