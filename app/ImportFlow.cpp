#include "app/ImportFlow.h"

#include "app/FileDrop.h"
#include "app/ImportPage.h"
#include "app/PathDialog.h"
#include "storage/DataMgr.h"
#include "storage/DeviceBackup.h"
#include "storage/ImportLook.h"
#include "widgets/LoadingWidget.h"
#include "widgets/Modal.h"

#include <QFileInfo>

ImportFlow::ImportFlow(DataMgr &dataMgr, const QString &folder, QWidget &window, QWidget &content)
    : QObject(&window)
    , m_dataMgr(dataMgr)
    , m_folder(folder)
    , m_window(window)
    , m_page(new ImportPage(&content))
    , m_look(new ImportLook(dataMgr.devices(), folder, this))
    , m_loading(new LoadingWidget(&window))
{
    m_loading->hide();
    connect(m_page, &ImportPage::selectRequested, this, &ImportFlow::selectFile);
    connect(m_page, &ImportPage::beginRequested, this, &ImportFlow::begin);
    connect(m_page, &ImportPage::abortRequested, this, &ImportFlow::close);
    connect(m_page, &ImportPage::lookWanted, this, &ImportFlow::look);
    connect(m_look, &ImportLook::changed, m_page,
            [page = m_page, look = m_look] { page->showOutlook(look->outlook()); });
    connect(&m_dataMgr, &DataMgr::updateModel, m_page, [page = m_page] {
        if (page->isOpen())
            page->lookAhead();
    });
    auto *const drop = new FileDrop(m_window, [this] { return !isImporting(); });
    connect(drop, &FileDrop::dropped, this, &ImportFlow::openWith);
}

bool ImportFlow::isImporting() const
{
    return !m_loading->isHidden();
}

void ImportFlow::open()
{
    if (m_page->isOpen())
        return;
    emit opening();
    m_page->clearPath();
    m_page->slideIn();
}

void ImportFlow::openWith(const QString &path)
{
    open();
    m_page->setPath(path);
}

void ImportFlow::close()
{
    m_page->slideOut();
}

void ImportFlow::selectFile()
{
    PathDialog dialog(tr("Open an device list file (recommended devices.csv)"),
                      {tr("Look in"), tr("File Name"), tr("File Type"), tr("Open"), tr("Cancel")},
                      &m_window);
    // The dialog would take a missing folder for the name of a file.
    const QString backups = m_folder + DeviceBackup::folderName;
    dialog.setDirectory(QFileInfo(backups).isDir() ? backups : m_folder);
    dialog.setNameFilter(tr("csv text device list(*.csv)"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    const QString path = dialog.ask();
    if (!path.isEmpty())
        m_page->setPath(path);
}

void ImportFlow::look(const QString &path)
{
    if (!isImporting() && !path.isEmpty() && QFileInfo(path).isFile())
        m_look->look(path);
    else
        m_look->stop();
}

void ImportFlow::begin()
{
    const QString path = m_page->path();
    if (path.isEmpty() || !QFileInfo(path).isFile()) {
        Modal::message(&m_window, QMessageBox::Warning, tr("Import Box"),
                       tr("Please choose correct file to import."));
        return;
    }
    m_dataMgr.setImportFlag(!m_page->clearList());
    m_loading->showOver(&m_window);
    m_dataMgr.setBusy(true);
    m_look->stop();
    m_dataMgr.importFile(path);
}

void ImportFlow::end(const ListJob &job)
{
    m_dataMgr.setBusy(false);
    m_loading->hide();
    m_page->slideOut();
    if (job.phase() != ListJob::Phase::Failed || m_dataMgr.isClosed())
        return;
    Modal::message(&m_window, QMessageBox::Warning, tr("Import Box"),
                   tr("Import is failed, please check the file format and encoding."),
                   job.isStoreAtFault()
                       ? tr("The file is not the reason. The device list can not be changed: %1.")
                             .arg(job.reason())
                       : job.reason());
    // The page keeps its path, for another try.
    if (m_dataMgr.isClosed())
        return;
    m_page->slideIn();
    m_page->lookAhead();
}

void ImportFlow::stopLooking()
{
    m_look->stop();
}

void ImportFlow::giveUp()
{
    m_dataMgr.setBusy(false);
    m_loading->hide();
}
