#pragma once

#include "app/OptionsFile.h"
#include "model/ContactInfo.h"

#include <QMainWindow>

#include <memory>

class CommandBar;
class ContactDialog;
class ContactsDialog;
class ContactView;
class DatabaseLayer;
class DataMgr;
class ExportPage;
class ImportLook;
class ImportPage;
class ListJob;
class LoadingWidget;
class PortDialog;
class QActionGroup;
class QTranslator;
class ReportBox;
class UserGuide;

/// The one top-level window: menus, buttons, the device list and the report box, and the flows that
/// start there. It stores nothing itself: every flow calls the data manager and the view follows
/// its updateModel(). GUI thread.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    /// The window over the program's own data manager and folder.
    explicit MainWindow(QWidget *parent = nullptr);
    /// `dataMgr` must outlive the window; `folder` holds the work files and "language/" and ends in
    /// "/".
    MainWindow(DataMgr &dataMgr, const QString &folder, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Shows the window in front of the others, with whatever box of its own stands open.
    void bringToFront();

    /// Chooses the language of the interface, once and before the widgets are built: by the
    /// installer's note if there is one, which it uses up, else as it was stored. False when
    /// nothing readable is stored.
    bool loadLanguageSetting();
    /// The stored language word.
    WriteResult createConfigFile(const QString &language);
    WriteResult updateConfigFile(const QString &language);
    WriteResult createOptionsFile(bool autoStart, bool recoveryData, bool autoHttpd);
    WriteResult updateOptionsFile(bool autoStart, bool recoveryData, bool autoHttpd);
    /// Lets the user's session start the program, or no longer.
    WriteResult setAutoStart(bool on);

signals:
    /// The window is done; the application is to quit.
    void globalQuit();

public slots:
    /// Lets the user choose the file to import.
    void selectLocalFile();
    void selectHttpdService();
    void selectPNPServer();
    void constructNewFile();
    void constructNewFiles();
    /// Shows the export page.
    void localExport();
    /// Shows the import page.
    void localImport();
    /// Shows the import page with the path of this file.
    void importDroppedFile(const QString &path);
    /// Asks for the port of the HTTP service.
    void configHttpdPortOption();
    /// Shows the help window, which goes on where it was closed.
    void showUserGuide();
    /// The port dialog's box was clicked.
    void slotUseDefault(bool useDefault);
    /// Install the translators, and remember the language word.
    void loadZhLang();
    void loadEnLang();
    void about();
    /// Ends the program: once, however often it is reached.
    void closeWindow();
    /// Opens the database; tells the user when that fails.
    void createConnection();
    /// Keeps the store's pointer.
    void onCreateDatabase();
    void onRemoveContact();
    /// Deletes the device of the view's current row.
    void onDeleteContact();
    /// Lets the user choose the folder to export to.
    void selectExportPath();
    /// Stores the port and removes its dialog; tells the user when it is out of range or cannot be
    /// stored.
    void configHttpdPortBegin();
    void exportBegin();
    void exportAbort();
    void ImportBegin();
    void ImportAbort();
    void configHttpdPortAbort();
    /// Stores the language chosen in the menu; it counts from the next start on. Where it cannot be
    /// stored, the user is told and the menu shows what is.
    void restoreLanguageSetting();
    /// Stores the options as the menu shows them; they count from the next start on. Where they
    /// cannot be stored, as above.
    void restoreOptions();
    /// Applies the stored options; false when there are none. The HTTP service, where they ask for
    /// it, starts once the window shows.
    bool readOptionsAndSet();
    void onHTTPDMsg(const QString &message);
    void onContactDialogEditFinished(ContactInfo *contact);
    void onContactDialogAddFinished(const ContactInfo &contact);
    void onContactsDialogAddFinished(const QList<ContactInfo> &contacts);
    void showContactViewDetail(int index);
    void deleteOneContact(int index);
    void onViewUpdated();
    void onDeleteAll();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    enum class State {
        Starting, ///< the stored list is being read
        Open,
        Closing, ///< as soon as what is under way on the list is done
        Ending,  ///< the list is being made safe, which may ask the user
        Closed
    };

    void createActions();
    void createMenus();
    void createContent();
    void createDialogs();
    void createPages();
    void connectImportLook();
    void connectContent();
    QAction *addCommand(const QString &text, const QString &statusTip);
    void askAndDeleteContact();
    void onJobEnded(const ListJob &job);
    void onImportEnded(const ListJob &job);
    void onIdle();
    void openHttpd();
    void closeHttpd();
    void enablePnp();
    void finishStart();
    void loadLanguage(const QString &language);
    void installTranslators(const QStringList &fileNames);
    WriteResult storeLanguage(const QString &language);
    bool storeOptions(const Options &wanted);
    void showOptions(const Options &options);
    static void tellNotStored(QWidget *parent, const QString &title, const QString &place,
                              const WriteResult &result);

    DataMgr &m_dataMgr;
    QString m_folder;
    QString m_language;       ///< of the interface, and of exported lists
    QString m_chosenLanguage; ///< of the next start
    QVector<QTranslator *> m_translators;
    DatabaseLayer *m_database = nullptr;

    QAction *m_newAction = nullptr;
    QAction *m_newsAction = nullptr;
    QAction *m_exitAction = nullptr;
    QAction *m_importAction = nullptr;
    QAction *m_exportAction = nullptr;
    QAction *m_httpdAction = nullptr;
    QAction *m_chineseAction = nullptr;
    QAction *m_englishAction = nullptr;
    QActionGroup *m_languageGroup = nullptr;
    QAction *m_autoStartAction = nullptr;
    QAction *m_recoveryDataAction = nullptr;
    QAction *m_autoHttpdAction = nullptr;
    QAction *m_httpdPortAction = nullptr;
    QAction *m_helpAction = nullptr;
    QAction *m_aboutAction = nullptr;

    CommandBar *m_commandBar = nullptr;
    ContactView *m_view = nullptr;
    ReportBox *m_reportBox = nullptr;

    ImportPage *m_importPage = nullptr;
    ImportLook *m_importLook = nullptr; ///< at the file that the page names
    ExportPage *m_exportPage = nullptr;
    LoadingWidget *m_loading = nullptr;
    PortDialog *m_portDialog = nullptr; ///< only while it is on screen

    /// Made on first use. Without a parent, so that it can be read beside an open dialog.
    std::unique_ptr<UserGuide> m_userGuide;
    ContactDialog *m_contactDialog = nullptr;
    ContactsDialog *m_contactsDialog = nullptr;
    /// What the edit dialog works on: a copy, as the list may change while the dialog is open.
    ContactInfo m_editedContact;
    QString m_editedMac;  ///< as it was when the dialog was opened
    int m_opened = 0;     ///< how often the dialog was, and at which of these the last device
    int m_submitted = 0;  ///< was handed over: only then it still holds what was typed
    Options m_options;    ///< as they are stored
    QString m_startError; ///< why the stored list could not be read
    State m_state = State::Starting;
};
