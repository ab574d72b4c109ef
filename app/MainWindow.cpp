#include "app/MainWindow.h"

#include "app/CommandBar.h"
#include "app/ProgramVersion.h"
#include "app/ReportBox.h"
#include "app/UndoBar.h"
#include "app/WindowPlace.h"
#include "dialogs/ContactDialog.h"
#include "dialogs/ContactsDialog.h"
#include "model/DebugLog.h"
#include "model/ProgramFolder.h"
#include "storage/DataMgr.h"
#include "storage/DatabaseLayer.h"
#include "storage/ImportLook.h"
#include "view/ContactTitle.h"
#include "view/ContactView.h"
#include "view/HiddenNote.h"
#include "view/SearchBar.h"
#include "view/SearchEdit.h"
#include "widgets/Grid.h"
#include "widgets/LoadingWidget.h"
#include "widgets/Modal.h"
#include "widgets/ScreenRoom.h"
#include "widgets/ScrollArea.h"
#include "widgets/UserGuide.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <QVBoxLayout>

namespace {

constexpr int shortestListPx = 10 * gridPx; ///< two rows and what is scrolled with
constexpr int smallScreenPx = 1000;         ///< less leaves the list no width to spare

constexpr const char *programTitle =
    QT_TRANSLATE_NOOP("MainWindow", "Velloran Device Management Tool");

/// For a window without a parent, which the system would put anywhere. It stays on the screen.
void centreOver(QWidget &window, const QWidget &other)
{
    QRect place(QPoint(), window.size());
    place.moveCenter(other.geometry().center());
    window.setGeometry(pulledInto(screenRoom(other), place));
}

void showInFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : MainWindow(*DataMgr::instance(), programFolder(), parent)
{
}

MainWindow::MainWindow(DataMgr &dataMgr, const QString &folder, QWidget *parent)
    : QMainWindow(parent)
    , m_dataMgr(dataMgr)
    , m_folder(folder)
    , m_language(QStringLiteral("en"))
    , m_chosenLanguage(m_language)
{
    // Before anything that shows a text: no widget is translated again.
    loadLanguageSetting();

    setObjectName(QStringLiteral("main_window"));
    setWindowTitle(tr(programTitle));
    setWindowIcon(Modal::windowIcon());
    auto *const place = new WindowPlace(*this, m_folder + QStringLiteral("window.xml"));
    connect(this, &MainWindow::globalQuit, place, &WindowPlace::save);

    createActions();
    createMenus();
    createContent();
    createDialogs();
    createPages();
    connectContent();

    createConnection();
    if (readOptionsAndSet() && !m_dataMgr.worker().isIdle())
        statusBar()->showMessage(tr("The device list is being read..."));
    onViewUpdated();
    QMetaObject::invokeMethod(this, &MainWindow::finishStart, Qt::QueuedConnection);
}

MainWindow::~MainWindow()
{
    // The content goes after this destructor, when there is no window left to close.
    disconnect(centralWidget(), &QObject::destroyed, this, &MainWindow::closeWindow);
    closeWindow();
}

void MainWindow::bringToFront()
{
    showInFront(*this);
    if (QWidget *const box = QApplication::activeModalWidget())
        showInFront(*box);
}

QAction *MainWindow::addCommand(const QString &text, const QString &statusTip)
{
    auto *const action = new QAction(text, this);
    action->setStatusTip(statusTip);
    return action;
}

void MainWindow::createActions()
{
    m_newAction = addCommand(tr("&New"), tr("construct a new device"));
    m_newAction->setShortcuts(QKeySequence::New);
    m_newsAction = addCommand(tr("&News"), tr("construct new devices"));
    m_newsAction->setShortcut(QKeySequence(QStringLiteral("CTRL+T")));
    m_exitAction = addCommand(tr("&Exit"), tr("Quit program"));
    m_importAction = addCommand(tr("&Local Import"), tr("Import file local"));
    m_importAction->setShortcut(QKeySequence(QStringLiteral("CTRL+I")));
    m_exportAction = addCommand(tr("&Local Export"), tr("Export file local"));
    m_exportAction->setShortcut(QKeySequence(QStringLiteral("CTRL+E")));
    m_httpdAction = addCommand(tr("&Httpd"), tr("Open httpd service"));
    // Each language is named in itself.
    m_chineseAction = addCommand(QStringLiteral("简体中文"), QString());
    m_chineseAction->setObjectName(QStringLiteral("zh"));
    m_englishAction = addCommand(QStringLiteral("English"), QString());
    m_englishAction->setObjectName(QStringLiteral("en"));
    m_autoStartAction = addCommand(tr("Auto Start"), tr("auto start"));
    m_recoveryDataAction = addCommand(tr("Recovery Data"), tr("recovery data"));
    m_autoHttpdAction = addCommand(tr("Auto Httpd"), tr("auto httpd"));
    m_httpdPortAction = addCommand(tr("Configure Httpd Port"), tr("Configure Httpd Port"));
    m_helpAction = addCommand(tr("Help"), tr("User Guide Help"));
    m_aboutAction = addCommand(tr("About"), tr("Show about info"));

    m_languageGroup = new QActionGroup(this);
    m_languageGroup->setExclusive(true);
    for (QAction *const action : {m_chineseAction, m_englishAction}) {
        action->setCheckable(true);
        action->setChecked(action->objectName() == m_language);
        m_languageGroup->addAction(action);
    }
    for (QAction *const action : {m_autoStartAction, m_recoveryDataAction, m_autoHttpdAction})
        action->setCheckable(true);

    // The same keys are shortcuts of the tool bar's buttons, and a shortcut that two objects claim
    // reaches neither. The menus show the keys, the buttons answer to them.
    for (QAction *const action : {m_newAction, m_newsAction, m_importAction, m_exportAction})
        action->setShortcutContext(Qt::WidgetShortcut);

    connect(m_newAction, &QAction::triggered, this, &MainWindow::constructNewFile);
    connect(m_newsAction, &QAction::triggered, this, &MainWindow::constructNewFiles);
    connect(m_importAction, &QAction::triggered, this, &MainWindow::localImport);
    connect(m_exportAction, &QAction::triggered, this, &MainWindow::localExport);
    connect(m_exitAction, &QAction::triggered, this, &MainWindow::closeWindow);
    connect(m_httpdAction, &QAction::triggered, this, &MainWindow::selectHttpdService);
    for (QAction *const action : {m_chineseAction, m_englishAction})
        connect(action, &QAction::triggered, this, &MainWindow::restoreLanguageSetting);
    for (QAction *const action : {m_autoStartAction, m_recoveryDataAction, m_autoHttpdAction})
        connect(action, &QAction::triggered, this, &MainWindow::restoreOptions);
    connect(m_httpdPortAction, &QAction::triggered, this, &MainWindow::configHttpdPortOption);
    connect(m_helpAction, &QAction::triggered, this, &MainWindow::showUserGuide);
    connect(m_aboutAction, &QAction::triggered, this, &MainWindow::about);
}

void MainWindow::createMenus()
{
    menuBar()->setObjectName(QStringLiteral("menu_bar"));
    const auto addMenu = [this](const QString &text, const char *name,
                                std::initializer_list<QAction *> actions) {
        QMenu *const menu = menuBar()->addMenu(text);
        menu->setObjectName(QLatin1String(name));
        for (QAction *const action : actions) {
            if (action)
                menu->addAction(action);
            else
                menu->addSeparator();
        }
    };
    addMenu(tr("&File"), "fileMenu", {m_newAction, m_newsAction, nullptr, m_exitAction});
    addMenu(tr("&Import"), "importMenu", {m_importAction});
    addMenu(tr("&Export"), "exportMenu", {m_exportAction});
    addMenu(tr("&Language"), "langMenu", {m_chineseAction, m_englishAction});
    addMenu(tr("&Options"), "", {m_autoStartAction, m_autoHttpdAction, m_httpdPortAction});
    addMenu(tr("&Help"), "HelpMenu", {m_helpAction});
    addMenu(tr("&About"), "aboutMenu", {m_aboutAction});
    // Where the actions' status tips appear, beside the last change.
    statusBar()->setObjectName(QStringLiteral("status_bar"));
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

    // In the smallest windows it scrolls. The pages lie over all of it, and a screen reader finds
    // them beside the area, not in it.
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
    statusBar()->addPermanentWidget(new UndoBar(m_dataMgr, *m_view, this));
}

void MainWindow::createDialogs()
{
    m_contactDialog = new ContactDialog(this);
    m_contactDialog->setWindowModality(Qt::WindowModal);
    m_contactsDialog = new ContactsDialog(this);
    m_contactsDialog->setWindowModality(Qt::WindowModal);
    m_contactsDialog->setLookup(
        [this](const QString &mac) { return m_dataMgr.devices().rowOfMac(mac) >= 0; });
    connect(&m_dataMgr, &DataMgr::updateModel, m_contactsDialog, &ContactsDialog::lookAhead);
    // Where a dialog goes at once with a box over it, a window manager may hand the keyboard to the
    // dialog that is just going, and then to nobody.
    for (QDialog *const dialog :
         {static_cast<QDialog *>(m_contactDialog), static_cast<QDialog *>(m_contactsDialog)})
        connect(dialog, &QDialog::finished, this, &QWidget::activateWindow);
}

void MainWindow::connectContent()
{
    connect(m_commandBar->newButton(), &QPushButton::clicked, this, &MainWindow::constructNewFile);
    connect(m_commandBar->newsButton(), &QPushButton::clicked, this,
            &MainWindow::constructNewFiles);
    connect(m_commandBar->importButton(), &QPushButton::clicked, this, &MainWindow::localImport);
    connect(m_commandBar->exportButton(), &QPushButton::clicked, this, &MainWindow::localExport);
    connect(m_commandBar->deleteAllButton(), &QPushButton::clicked, this, &MainWindow::onDeleteAll);
    connect(m_commandBar->httpButton(), &QPushButton::clicked, this,
            &MainWindow::selectHttpdService);
    connect(m_commandBar->pnpButton(), &QPushButton::clicked, this, &MainWindow::selectPNPServer);

    connect(m_view, &ContactView::onRowDetail, this, &MainWindow::showContactViewDetail);
    connect(m_view, &ContactView::onRowDelete, this, &MainWindow::deleteOneContact);
    // The trash can by keyboard. The row that a key means is easier to mistake than the one that is
    // clicked, so this asks.
    auto *const deleteKey = new QShortcut(QKeySequence::Delete, m_view);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, this, &MainWindow::askAndDeleteContact);
    connect(m_view, &ContactView::viewUpdated, this, &MainWindow::onViewUpdated);
    connect(m_contactDialog, &ContactDialog::editSaveSucceed, this,
            &MainWindow::onContactDialogEditFinished);
    connect(m_contactDialog, &ContactDialog::addSaveSucceed, this,
            &MainWindow::onContactDialogAddFinished);
    connect(m_contactsDialog, &ContactsDialog::addSaveSucceed, this,
            &MainWindow::onContactsDialogAddFinished);
    connect(centralWidget(), &QObject::destroyed, this, &MainWindow::closeWindow);
    connect(&m_dataMgr, &DataMgr::updateModel, m_view, &ContactView::updateContactModel);
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
        onImportEnded(job);
        break;
    case ListJob::Kind::Insert:
        if (!job.hasChangedList() && m_state == State::Open && m_submitted == m_opened)
            m_contactDialog->bringBack();
        break;
    case ListJob::Kind::Edit:
        if (!job.hasChangedList() && m_state == State::Open && m_submitted == m_opened)
            m_contactDialog->bringBackFor(&m_editedContact);
        break;
    case ListJob::Kind::Add:
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

/// What waits for the window to show and for the list: one after the other, as each may stop for
/// the user.
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
    if (m_autoHttpdAction->isChecked() && m_state == State::Open &&
        m_dataMgr.httpState() == HttpdControl::State::Closed)
        openHttpd();
}

void MainWindow::constructNewFile()
{
    m_contactDialog->setWindowTitle(tr("New Device"));
    ++m_opened;
    m_contactDialog->loadContact(true, nullptr);
    m_contactDialog->show();
}

void MainWindow::constructNewFiles()
{
    m_contactsDialog->setWindowTitle(tr("New Devices"));
    m_contactsDialog->reset();
    m_contactsDialog->show();
}

void MainWindow::onContactsDialogAddFinished(const QList<ContactInfo> &contacts)
{
    if (!contacts.isEmpty())
        m_view->showDevice(contacts.constFirst().mac);
    m_dataMgr.addContacts(contacts);
}

void MainWindow::onContactDialogAddFinished(const ContactInfo &contact)
{
    m_submitted = m_opened;
    m_view->showDevice(contact.mac);
    m_dataMgr.insertContactNode(contact);
}

void MainWindow::showContactViewDetail(int index)
{
    qCDebug(debugLog) << "showContactViewDetail index =" << index;
    if (index < 0 || index >= m_dataMgr.devices().size())
        return;
    const DeviceNode node = m_dataMgr.devices().at(index);
    m_editedContact = node.info;
    m_editedContact.id = node.number;
    m_editedMac = node.info.mac;
    // A title bar knows no shortcuts, and would show both.
    m_contactDialog->setWindowTitle(
        tr("Overview && Edit").replace(QLatin1String("&&"), QLatin1String("&")));
    ++m_opened;
    m_contactDialog->loadContact(false, &m_editedContact);
    m_contactDialog->show();
}

void MainWindow::onContactDialogEditFinished(ContactInfo *contact)
{
    m_submitted = m_opened;
    m_dataMgr.updateContact(*contact, m_editedMac);
}

void MainWindow::deleteOneContact(int index)
{
    qCDebug(debugLog) << "deleteOneContact index =" << index;
    m_dataMgr.deleteContactAt(index);
}

void MainWindow::onDeleteContact()
{
    m_dataMgr.setBusy(true);
    m_dataMgr.deleteContactAt(m_view->currentListRow());
    m_dataMgr.setBusy(false);
}

void MainWindow::askAndDeleteContact()
{
    const int row = m_view->currentListRow();
    if (row < 0 || row >= m_dataMgr.devices().size())
        return;
    const QString mac = m_dataMgr.devices().at(row).info.mac;
    if (Modal::question(this, tr("Delete"), tr("Do you want to delete the device %1?").arg(mac)) !=
        Modal::Answer::Yes)
        return;
    // A telephone or another window may have changed the list meanwhile.
    const int current = m_view->currentListRow();
    if (current >= 0 && current < m_dataMgr.devices().size() &&
        m_dataMgr.devices().at(current).info.mac == mac)
        onDeleteContact();
}

void MainWindow::onRemoveContact()
{
    m_dataMgr.setBusy(true);
    if (m_view->selectionState() != 0)
        m_dataMgr.setBusy(false);
}

void MainWindow::onDeleteAll()
{
    qCDebug(debugLog) << "onDeleteAll.";
    const int hidden = m_view->hiddenCount();
    const QString note = hidden > 0 ? tr("Hidden by the search: %1").arg(hidden) : QString();
    if (Modal::question(this, tr("Delete All Devices"), tr("Do you want to delete all devices?"),
                        note) == Modal::Answer::Yes)
        m_dataMgr.deleteAllContacts();
}

void MainWindow::onViewUpdated()
{
    qCDebug(debugLog) << "onViewUpdated";
    m_commandBar->setDeviceCount(m_view->deviceCount());
}

void MainWindow::showUserGuide()
{
    const bool isNew = !m_userGuide;
    if (isNew)
        m_userGuide = std::make_unique<UserGuide>(m_language);
    const bool isElsewhere = !m_userGuide->isVisible() && m_userGuide->screen() != screen();
    if (isNew || isElsewhere) {
        m_userGuide->fitInto(screenRoom(*this));
        centreOver(*m_userGuide, *this);
    }
    showInFront(*m_userGuide);
}

void MainWindow::about()
{
    QMessageBox box(this);
    box.setWindowIcon(Modal::windowIcon());
    box.setWindowTitle(tr(programTitle));
    box.setTextFormat(Qt::RichText);
    box.setText(QStringLiteral("<h2>%1</h2><p>%2</p><p>%3</p><p>%4</p>")
                    .arg(tr(programTitle), tr("Version: %1").arg(QLatin1String(programVersion)),
                         tr("Keeps the list of your desk phones and gives each one its "
                            "configuration over the local network."),
                         tr("Free software under the MIT licence.")));
    box.setStandardButtons(QMessageBox::Ok);
    Modal::run(box);
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
    // A list in the making is finished first; a question that nobody answers is not waited for.
    if (m_dataMgr.worker().phase() == ListWorker::Phase::Working) {
        m_state = State::Closing;
        return;
    }
    m_state = State::Ending;
    m_importLook->stop();
    // First, as a list that could not be saved on a full disk may need the room.
    m_dataMgr.removeWorkFiles();
    if (!m_dataMgr.keepUnsavedList()) {
        m_state = State::Open;
        m_dataMgr.setBusy(false);
        m_loading->hide(); // of an import that was given up
        return;
    }
    m_state = State::Closed;
    m_dataMgr.close();
    emit globalQuit();
}
