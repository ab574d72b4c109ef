// The window's flows for lists in files: the import and the export page.
#include "app/ExportPage.h"
#include "app/FileDrop.h"
#include "app/ImportPage.h"
#include "app/MainWindow.h"
#include "model/ExportType.h"
#include "storage/DataMgr.h"
#include "storage/ImportLook.h"
#include "widgets/LoadingWidget.h"
#include "widgets/Modal.h"
#include "widgets/ScreenRoom.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QTreeView>

namespace {

constexpr QSize dialogSize(760, 460);
const QString backupFolder = QStringLiteral("backup");
const QString exportName = QStringLiteral("devices");

/// Qt's own dialog, as the system's would not take the labels. To be called before anything else is
/// set: what was set before would be lost with the system's dialog.
void useOwnDialog(QFileDialog &dialog, const QString &title)
{
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setWindowIcon(Modal::windowIcon());
    dialog.setWindowTitle(title);
    // As it comes, it cuts the dates off.
    dialog.resize(dialogSize.boundedTo(screenRoom(dialog).size()));
    QHeaderView *const header = dialog.findChild<QTreeView *>()->header();
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
}

/// The path chosen, or an empty one.
QString chosenPath(QFileDialog &dialog)
{
    return Modal::run(dialog) == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

void MainWindow::createPages()
{
    m_importPage = new ImportPage(centralWidget());
    connect(m_importPage, &ImportPage::selectRequested, this, &MainWindow::selectLocalFile);
    connect(m_importPage, &ImportPage::beginRequested, this, &MainWindow::ImportBegin);
    connect(m_importPage, &ImportPage::abortRequested, this, &MainWindow::ImportAbort);
    m_exportPage = new ExportPage(centralWidget());
    connect(m_exportPage, &ExportPage::selectRequested, this, &MainWindow::selectExportPath);
    connect(m_exportPage, &ExportPage::beginRequested, this, &MainWindow::exportBegin);
    connect(m_exportPage, &ExportPage::abortRequested, this, &MainWindow::exportAbort);
    m_loading = new LoadingWidget(this);
    m_loading->hide();
    connectImportLook();
    auto *const drop = new FileDrop(*this, [this] { return m_loading->isHidden(); });
    connect(drop, &FileDrop::dropped, this, &MainWindow::importDroppedFile);
}

void MainWindow::importDroppedFile(const QString &path)
{
    localImport();
    m_importPage->setPath(path);
}

/// The page may ask last when the window goes, and only what is still there then has a part in it.
void MainWindow::connectImportLook()
{
    ImportPage *const page = m_importPage;
    auto *const look = new ImportLook(m_dataMgr.devices(), m_folder, this);
    m_importLook = look;
    connect(look, &ImportLook::changed, page, [=] { page->showOutlook(look->outlook()); });
    connect(page, &ImportPage::lookWanted, look, [look, loading = m_loading](const QString &path) {
        const bool isImporting = !loading->isHidden();
        if (!isImporting && !path.isEmpty() && QFileInfo(path).isFile())
            look->look(path);
        else
            look->stop();
    });
    connect(&m_dataMgr, &DataMgr::updateModel, page, [page] {
        if (page->isOpen())
            page->lookAhead();
    });
}

void MainWindow::localImport()
{
    if (m_importPage->isOpen())
        return;
    exportAbort();
    m_importPage->clearPath();
    m_importPage->slideIn();
}

void MainWindow::ImportAbort()
{
    m_importPage->slideOut();
}

void MainWindow::selectLocalFile()
{
    QFileDialog dialog(this);
    useOwnDialog(dialog, tr("Open an device list file (recommended devices.csv)"));
    // A folder that is not there would be taken for the name of a file.
    const bool hasBackups = QFileInfo(m_folder + backupFolder).isDir();
    dialog.setDirectory(hasBackups ? m_folder + backupFolder : m_folder);
    dialog.setNameFilter(tr("csv text device list(*.csv)"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setLabelText(QFileDialog::LookIn, tr("Look in"));
    dialog.setLabelText(QFileDialog::FileName, tr("File Name"));
    dialog.setLabelText(QFileDialog::FileType, tr("File Type"));
    dialog.setLabelText(QFileDialog::Accept, tr("Open"));
    dialog.setLabelText(QFileDialog::Reject, tr("Cancel"));
    const QString path = chosenPath(dialog);
    if (!path.isEmpty())
        m_importPage->setPath(path);
}

void MainWindow::ImportBegin()
{
    const QString path = m_importPage->path();
    if (path.isEmpty() || !QFileInfo(path).isFile()) {
        Modal::message(this, QMessageBox::Warning, tr("Import Box"),
                       tr("Please choose correct file to import."));
        return;
    }
    m_dataMgr.setImportFlag(!m_importPage->clearList());
    m_loading->showOver(this);
    m_dataMgr.setBusy(true);
    m_importLook->stop();
    m_dataMgr.importFile(path);
}

void MainWindow::onImportEnded(const ListJob &job)
{
    m_dataMgr.setBusy(false);
    m_loading->hide();
    m_importPage->slideOut();
    if (job.phase() != ListJob::Phase::Failed || m_state == State::Closed)
        return;
    Modal::message(this, QMessageBox::Warning, tr("Import Box"),
                   tr("Import is failed, please check the file format and encoding."),
                   job.reason());
    // With its path, for another try.
    if (m_state == State::Closed)
        return;
    m_importPage->slideIn();
    m_importPage->lookAhead();
}

void MainWindow::localExport()
{
    if (m_exportPage->isOpen())
        return;
    ImportAbort();
    m_exportPage->clearPath();
    m_exportPage->slideIn();
}

void MainWindow::exportAbort()
{
    m_exportPage->slideOut();
}

void MainWindow::selectExportPath()
{
    QFileDialog dialog(this);
    useOwnDialog(dialog, tr("Select a folder to export"));
    dialog.setDirectory(m_exportPage->startFolder());
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setLabelText(QFileDialog::LookIn, tr("Look in:"));
    dialog.setLabelText(QFileDialog::FileName, tr("Path Name"));
    dialog.setLabelText(QFileDialog::FileType, tr("Path Type"));
    dialog.setLabelText(QFileDialog::Accept, tr("Select"));
    dialog.setLabelText(QFileDialog::Reject, tr("Cancel"));
    const QString path = chosenPath(dialog);
    if (!path.isEmpty())
        m_exportPage->setPath(path);
}

void MainWindow::exportBegin()
{
    const QString folder = m_exportPage->path();
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) {
        Modal::message(this, QMessageBox::Warning, tr("Export Box"),
                       tr("Please choose correct path to export."));
        return;
    }
    const QString target = folder + QLatin1Char('/') + exportName + QLatin1String(".csv");
    if (QFileInfo::exists(target) &&
        Modal::question(this, tr("Replace action"),
                        target + tr("has already exist") + tr(",") +
                            tr("do you want to replace it?")) != Modal::Answer::Yes)
        return;
    const int type = m_language == QLatin1String("zh") ? CsvChinese : CsvEnglish;
    QString reason;
    if (m_dataMgr.exportDevices(type, QStringLiteral("UTF-8"), exportName, folder, reason)) {
        Modal::message(this, QMessageBox::Information, tr("Export Box"),
                       tr("File has been exported successfully!"));
        m_exportPage->slideOut();
    } else {
        const QString note =
            reason.isEmpty()
                ? QString()
                : tr("%1 can not be written: %2.").arg(QDir::toNativeSeparators(target), reason);
        Modal::message(this, QMessageBox::Warning, tr("Export Box"),
                       tr("File export failed, please check directory!"), note);
    }
}
