#pragma once

#include "app/DeviceFlow.h"
#include "app/ExportFlow.h"
#include "app/HelpFlow.h"
#include "app/ImportFlow.h"
#include "app/LanguageSetting.h"
#include "app/OptionsSetting.h"
#include "app/PortSetting.h"
#include "app/ServiceFlow.h"

#include <QMainWindow>

class CommandBar;
class ContactView;
class DatabaseLayer;
class DataMgr;
class ListJob;
class ReportBox;

/// The main window: the device list between its buttons and the report box, and the start and the
/// end of the program. A menu or a button begins a flow; what is stored beside the list is a
/// setting. Each is a class of its own, to which the slots of the window hand over. The window
/// stores nothing itself: every flow calls the data manager, and the view follows
/// DataMgr::updateModel(). GUI thread.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    /// Works with the program's own data manager and folder.
    explicit MainWindow(QWidget *parent = nullptr);
    /// `dataMgr` must outlive the window; `folder` holds the work files and "language/" and ends in
    /// "/". Does not show the window. Steps that may ask the user wait for the event loop.
    MainWindow(DataMgr &dataMgr, const QString &folder, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Shows the window in front of the others, with an open box of its own, if any.
    void bringToFront();

    /// See LanguageSetting::load().
    bool loadLanguageSetting() { return m_language->load(); }
    // Part of the interface; nothing here calls the next five. See the settings.
    WriteResult createConfigFile(const QString &word) { return m_language->createFile(word); }
    WriteResult updateConfigFile(const QString &word) { return m_language->updateFile(word); }
    WriteResult createOptionsFile(bool autoStart, bool recoveryData, bool autoHttpd)
    {
        return m_options->createFile({autoStart, recoveryData, autoHttpd});
    }
    WriteResult updateOptionsFile(bool autoStart, bool recoveryData, bool autoHttpd)
    {
        return m_options->updateFile({autoStart, recoveryData, autoHttpd});
    }
    WriteResult setAutoStart(bool on) { return OptionsSetting::setAutoStart(on); }

signals:
    /// The window is done; the application is to quit.
    void globalQuit();

public slots:
    // Most slots hand over to a flow or a setting, which connects the buttons of its own pages.

    // Part of the interface; nothing here calls it.
    void selectLocalFile() { m_import->selectFile(); }

    void selectHttpdService() { m_services->switchHttpd(); }
    void selectPNPServer() { m_services->switchPnp(); }
    void constructNewFile() { m_deviceFlow->openNew(); }
    void constructNewFiles() { m_deviceFlow->openBatch(); }
    void localExport() { m_export->open(); }
    void localImport() { m_import->open(); }
    void configHttpdPortOption() { m_port->open(); }
    void showUserGuide() { m_help->showGuide(); }

    // Part of the interface; nothing here calls the next three.
    void slotUseDefault(bool useDefault) { m_port->setUseDefault(useDefault); }
    void loadZhLang() { m_language->loadChinese(); }
    void loadEnLang() { m_language->loadEnglish(); }

    void about() { m_help->showAbout(); }
    /// Ends the program: once, however often it is called.
    void closeWindow();
    /// Opens the database. A failure is reported to the user at the end of the start.
    void createConnection();
    /// Keeps the pointer to the store, which nothing here reads.
    void onCreateDatabase();

    // Part of the interface; nothing here calls the next nine.
    void onRemoveContact() { m_deviceFlow->markBusyUnlessSelected(); }
    void onDeleteContact() { m_deviceFlow->deleteCurrent(); }
    void selectExportPath() { m_export->selectFolder(); }
    void configHttpdPortBegin() { m_port->store(); }
    void exportBegin() { m_export->begin(); }
    void exportAbort() { m_export->close(); }
    void ImportBegin() { m_import->begin(); }
    void ImportAbort() { m_import->close(); }
    void configHttpdPortAbort() { m_port->close(); }

    void restoreLanguageSetting() { m_language->storeChosen(); }
    void restoreOptions() { m_options->storeShown(); }
    bool readOptionsAndSet() { return m_options->readAndApply(); }
    void onHTTPDMsg(const QString &message) { m_services->addReport(message); }
    void onContactDialogEditFinished(ContactInfo *contact) { m_deviceFlow->update(*contact); }
    void onContactDialogAddFinished(const ContactInfo &contact) { m_deviceFlow->add(contact); }
    void onContactsDialogAddFinished(const QList<ContactInfo> &all) { m_deviceFlow->addBatch(all); }
    void showContactViewDetail(int index) { m_deviceFlow->openEdit(index); }
    void deleteOneContact(int index) { m_deviceFlow->deleteRow(index); }
    /// Shows the number of devices.
    void onViewUpdated();
    void onDeleteAll() { m_deviceFlow->deleteAll(); }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    enum class State {
        Starting, ///< the stored list is being read
        Open,
        Closing, ///< waits for the job that is under way
        Ending,  ///< the list is being made safe, which may ask the user
        Closed
    };

    void createContent();
    void createFlows();
    void connectContent();
    void connectDataMgr();
    void onJobEnded(const ListJob &job);
    void onIdle();
    void finishStart();

    DataMgr &m_dataMgr;
    QString m_folder;
    DatabaseLayer *m_database = nullptr;

    LanguageSetting *m_language;
    OptionsSetting *m_options = nullptr;
    PortSetting *m_port = nullptr;

    CommandBar *m_commandBar = nullptr;
    ContactView *m_view = nullptr;
    ReportBox *m_reportBox = nullptr;

    DeviceFlow *m_deviceFlow = nullptr;
    ImportFlow *m_import = nullptr;
    ExportFlow *m_export = nullptr;
    ServiceFlow *m_services = nullptr;
    HelpFlow *m_help = nullptr;

    QString m_startError; ///< why the stored list could not be read
    State m_state = State::Starting;
};
