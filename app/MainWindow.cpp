#include "app/MainWindow.h"

#include "app/CommandBar.h"
#include "app/MainMenu.h"
#include "app/ReportBox.h"
#include "app/UndoBar.h"
#include "app/WindowPlace.h"
#include "dialogs/ContactDialog.h"
#include "dialogs/ContactsDialog.h"
#include "model/DebugLog.h"
#include "model/ProgramFolder.h"
#include "storage/DataMgr.h"
#include "view/ContactTitle.h"
#include "view/ContactView.h"
#include "view/HiddenNote.h"
#include "view/SearchBar.h"
#include "view/SearchEdit.h"
#include "widgets/Grid.h"
#include "widgets/Modal.h"
#include "widgets/ScreenRoom.h"
#include "widgets/ScrollArea.h"
#include "widgets/ShowInFront.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>

namespace {

constexpr int shortestListPx = 10 * gridPx; ///< two rows and a scroll bar
constexpr int smallScreenPx = 1000;         ///< a smaller one leaves the list no width to spare

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : MainWindow(*DataMgr::instance(), programFolder(), parent)
{
}

MainWindow::MainWindow(DataMgr &dataMgr, const QString &folder, QWidget *parent)
    : QMainWindow(parent)
    , m_dataMgr(dataMgr)
    , m_folder(folder)
    , m_language(new LanguageSetting(folder, *this))
{
    // Before anything that shows a text: no widget is translated again.
    loadLanguageSetting();

    setObjectName(QStringLiteral("main_window"));
    setWindowTitle(tr("Velloran Device Management Tool"));
    setWindowIcon(Modal::windowIcon());
    auto *const place = new WindowPlace(*this, m_folder + QStringLiteral("window.xml"));
    connect(this, &MainWindow::globalQuit, place, &WindowPlace::save);

    m_options = new OptionsSetting(m_dataMgr, m_folder, *this);
    m_port = new PortSetting(*this);
    MainMenu::addTo(*this, *m_language, *m_options);
    createContent();
    createFlows();
    connectContent();
    connectDataMgr();

    createConnection();
    if (readOptionsAndSet() && !m_dataMgr.worker().isIdle())
        statusBar()->showMessage(tr("The device list is being read..."));
    onViewUpdated();
    QMetaObject::invokeMethod(this, &MainWindow::finishStart, Qt::QueuedConnection);
}

MainWindow::~MainWindow()
{
    // The content is destroyed after this destructor, when there is no window left to close.
    disconnect(centralWidget(), &QObject::destroyed, this, &MainWindow::closeWindow);
    closeWindow();
}

void MainWindow::bringToFront()
{
    showInFront(*this);
    if (QWidget *const box = QApplication::activeModalWidget())
        showInFront(*box);
}

void MainWindow::createContent()
{
    auto *const content = new QWidget(this);
    content->setObjectName(QStringLiteral("content"));
    m_commandBar = new CommandBar(content);

    auto *const list = new QWidget(content);
    list->setObjectName(QStringLiteral("list_frame"));
    m_view = new ContactView(m_dataMgr.devices(), list);
    auto *const listColumn = new QVBoxLayout(list);
    listColumn->setContentsMargins(0, 0, 0, 0);
    listColumn->setSpacing(0);
    listColumn->addWidget(new ContactTitle(*m_view, list));
    auto *const searchBar = new SearchBar(*m_view, list);
    connect(searchBar, &SearchBar::searchTextChanged, m_view, &ContactView::sortBySearchEdit);
    m_commandBar->addNote(new HiddenNote(*m_view, *searchBar));
    listColumn->addWidget(searchBar);
    listColumn->addWidget(m_view);
    m_view->setMinimumHeight(shortestListPx);
    QWidget::setTabOrder(searchBar->searchEdit(SearchEdit::boxCount - 1), m_view);

    m_reportBox = new ReportBox(content);
    m_reportBox->hide();

    auto *const column = new QVBoxLayout(content);
    const int side = screenRoom(*this).width() < smallScreenPx ? gridPx : 2 * gridPx;
    column->setContentsMargins(side, 2 * gridPx, side, gridPx);
    column->setSpacing(2 * gridPx);
    column->addWidget(m_commandBar);
    column->addWidget(list, 1);
    column->addWidget(m_reportBox);

    // In the smallest windows the content scrolls. The pages lie over all of it, and a screen
    // reader finds them beside the scroll area, not in it.
    auto *const middle = new QWidget(this);
    auto *const area = new ScrollArea(middle);
    area->setObjectName(QStringLiteral("contentScrollArea"));
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    area->setWidget(content);
    auto *const whole = new QVBoxLayout(middle);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(area);
    setCentralWidget(middle);
    // The status bar shows the actions' status tips and the last change.
    statusBar()->setObjectName(QStringLiteral("status_bar"));
    statusBar()->addPermanentWidget(new UndoBar(m_dataMgr, *m_view, this));
}

void MainWindow::createFlows()
{
    QWidget &content = *centralWidget();
    m_deviceFlow = new DeviceFlow(m_dataMgr, *m_view, *this);
    m_import = new ImportFlow(m_dataMgr, m_folder, *this, content);
    m_export = new ExportFlow(m_dataMgr, *m_language, *this, content);
    // Only one page is open at a time.
    connect(m_import, &ImportFlow::opening, m_export, &ExportFlow::close);
    connect(m_export, &ExportFlow::opening, m_import, &ImportFlow::close);
    m_services = new ServiceFlow(m_dataMgr, *m_commandBar, *m_reportBox, *this);
    m_help = new HelpFlow(*m_language, *this);
}

void MainWindow::connectContent()
{
    const auto onClick = [this](const QPushButton *button, void (MainWindow::*slot)()) {
        connect(button, &QPushButton::clicked, this, slot);
    };
    onClick(m_commandBar->newButton(), &MainWindow::constructNewFile);
    onClick(m_commandBar->newsButton(), &MainWindow::constructNewFiles);
    onClick(m_commandBar->importButton(), &MainWindow::localImport);
    onClick(m_commandBar->exportButton(), &MainWindow::localExport);
    onClick(m_commandBar->deleteAllButton(), &MainWindow::onDeleteAll);
    onClick(m_commandBar->httpButton(), &MainWindow::selectHttpdService);
    onClick(m_commandBar->pnpButton(), &MainWindow::selectPNPServer);

    connect(m_view, &ContactView::onRowDetail, this, &MainWindow::showContactViewDetail);
    connect(m_view, &ContactView::onRowDelete, this, &MainWindow::deleteOneContact);
    connect(m_view, &ContactView::viewUpdated, this, &MainWindow::onViewUpdated);
    const ContactDialog &contactDialog = m_deviceFlow->contactDialog();
    connect(&contactDialog, &ContactDialog::editSaveSucceed, this,
            &MainWindow::onContactDialogEditFinished);
    connect(&contactDialog, &ContactDialog::addSaveSucceed, this,
            &MainWindow::onContactDialogAddFinished);
    connect(&m_deviceFlow->contactsDialog(), &ContactsDialog::addSaveSucceed, this,
            &MainWindow::onContactsDialogAddFinished);
    connect(centralWidget(), &QObject::destroyed, this, &MainWindow::closeWindow);
}

void MainWindow::connectDataMgr()
{
    connect(&m_dataMgr, &DataMgr::updateModel, m_view, &ContactView::updateContactModel);
    connect(&m_dataMgr, &DataMgr::httpdMsg, this, &MainWindow::onHTTPDMsg);
    m_view->setPhonesSeen(m_dataMgr.phonesSeen());
    m_commandBar->setSeenCount(0);
    connect(&m_dataMgr.phonesSeen(), &PhonesSeen::counted, m_commandBar, &CommandBar::setSeenCount);
    connect(&m_dataMgr.worker(), &ListWorker::ended, this, &MainWindow::onJobEnded);
    connect(&m_dataMgr.worker(), &ListWorker::idle, this, &MainWindow::onIdle);
}

void MainWindow::createConnection()
{
    onCreateDatabase();
    if (!m_dataMgr.openDatabase())
        m_startError = m_dataMgr.lastErrorText();
}

void MainWindow::onCreateDatabase()
{
    m_database = m_dataMgr.database();
}

void MainWindow::onJobEnded(const ListJob &job)
{
    switch (job.kind()) {
    case ListJob::Kind::Load:
        statusBar()->clearMessage();
        m_startError = job.reason();
        break;
    case ListJob::Kind::Import:
        m_import->end(job);
        break;
    case ListJob::Kind::Insert:
    case ListJob::Kind::Add:
    case ListJob::Kind::Edit:
        if (!job.hasChangedList() && m_state == State::Open)
            m_deviceFlow->bringBack(job.kind());
        break;
    case ListJob::Kind::Clear:
    case ListJob::Kind::Undo:
    case ListJob::Kind::Redo:
    case ListJob::Kind::Save:
        break;
    }
}

void MainWindow::onIdle()
{
    if (m_state == State::Starting)
        QMetaObject::invokeMethod(this, &MainWindow::finishStart, Qt::QueuedConnection);
    else if (m_state == State::Closing)
        QMetaObject::invokeMethod(this, &MainWindow::closeWindow, Qt::QueuedConnection);
}

/// The steps of the start that wait for the window and the list; one after the other, as each may
/// stop for the user.
void MainWindow::finishStart()
{
    if (m_state != State::Starting || !m_dataMgr.worker().isIdle())
        return;
    m_state = State::Open;
    if (!m_startError.isEmpty()) {
        Modal::message(this, QMessageBox::Critical, tr("Database Error"),
                       tr("The device list in phonebook.db can not be read: %1. "
                          "The file is left untouched and nothing will be saved in this run.")
                           .arg(m_startError));
    }
    if (m_options->opensHttpd() && m_state == State::Open)
        m_services->openHttpd();
}

void MainWindow::onViewUpdated()
{
    qCDebug(debugLog) << "onViewUpdated";
    m_commandBar->setDeviceCount(m_view->deviceCount());
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    closeWindow();
    event->setAccepted(m_state == State::Closed);
}

void MainWindow::closeWindow()
{
    if (m_state == State::Ending || m_state == State::Closed)
        return;
    // A job under way is finished first, unless it waits for an answer of the user.
    if (m_dataMgr.worker().phase() == ListWorker::Phase::Working) {
        m_state = State::Closing;
        return;
    }
    m_state = State::Ending;
    m_import->stopLooking();
    // Work files go first: on a full disk, saving the list may need their room.
    m_dataMgr.removeWorkFiles();
    if (!m_dataMgr.keepUnsavedList()) {
        m_state = State::Open;
        m_import->giveUp();
        return;
    }
    m_state = State::Closed;
    m_dataMgr.close();
    emit globalQuit();
}
