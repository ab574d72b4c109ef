#include "app/ExportFlow.h"

#include "app/ExportPage.h"
#include "app/Language.h"
#include "app/LanguageSetting.h"
#include "app/NotWritten.h"
#include "app/PathDialog.h"
#include "model/ExportType.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

#include <QFileInfo>

namespace {

const QString exportName = QStringLiteral("devices");

} // namespace

ExportFlow::ExportFlow(DataMgr &dataMgr, const LanguageSetting &language, QWidget &window,
                       QWidget &content)
    : QObject(&window)
    , m_dataMgr(dataMgr)
    , m_language(language)
    , m_window(window)
    , m_page(new ExportPage(&content))
{
    connect(m_page, &ExportPage::selectRequested, this, &ExportFlow::selectFolder);
    connect(m_page, &ExportPage::beginRequested, this, &ExportFlow::begin);
    connect(m_page, &ExportPage::abortRequested, this, &ExportFlow::close);
}

void ExportFlow::open()
{
    if (m_page->isOpen())
        return;
    emit opening();
    m_page->clearPath();
    m_page->slideIn();
}

void ExportFlow::close()
{
    m_page->slideOut();
}

void ExportFlow::selectFolder()
{
    PathDialog dialog(
        tr("Select a folder to export"),
        {tr("Look in:"), tr("Path Name"), tr("Path Type"), tr("Select"), tr("Cancel")}, &m_window);
    dialog.setDirectory(m_page->startFolder());
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    const QString path = dialog.ask();
    if (!path.isEmpty())
        m_page->setPath(path);
}

void ExportFlow::begin()
{
    const QString folder = m_page->path();
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) {
        Modal::message(&m_window, QMessageBox::Warning, tr("Export Box"),
                       tr("Please choose correct path to export."));
        return;
    }
    const QString target = folder + QLatin1Char('/') + exportName + QLatin1String(".csv");
    if (QFileInfo::exists(target) &&
        Modal::question(&m_window, tr("Replace action"),
                        target + tr("has already exist") + tr(",") +
                            tr("do you want to replace it?")) != Modal::Answer::Yes)
        return;
    write(folder, target);
}

void ExportFlow::write(const QString &folder, const QString &target)
{
    const int type = m_language.language().listFile;
    QString reason;
    if (m_dataMgr.exportDevices(type, QStringLiteral("UTF-8"), exportName, folder, reason)) {
        Modal::message(&m_window, QMessageBox::Information, tr("Export Box"),
                       tr("File has been exported successfully!"));
        m_page->slideOut();
    } else {
        Modal::message(&m_window, QMessageBox::Warning, tr("Export Box"),
                       tr("File export failed, please check directory!"),
                       reason.isEmpty() ? QString() : NotWritten::text(target, reason));
    }
}
