#pragma once

#include "model/DeviceList.h"
#include "model/DeviceLookup.h"
#include "model/PhonesSeen.h"
#include "model/ProgramFolder.h"
#include "model/ProvisioningSource.h"
#include "net/HttpdControl.h"
#include "net/PnPServer.h"
#include "net/RequestLog.h"
#include "storage/FolderRemover.h"
#include "storage/ListHistory.h"
#include "storage/ListStore.h"
#include "storage/ListWorker.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>

#include <atomic>
#include <memory>

class DatabaseLayer;
class DBOperator;

/// The coordinator: owns the device list, its jobs and the provisioning services, keeps the list in
/// the store, and puts the questions to the user.
///
/// Every change of the list is a job of the ListWorker, or waits there for its turn. A short job is
/// done when the call returns, a long one some turns of the event loop later; worker() tells when.
/// The user is told of a failed save once, until a save succeeds again.
///
/// GUI thread, except the functions marked "Any thread".
class DataMgr : public QObject, public ProvisioningSource, public DeviceLookup
{
    Q_OBJECT
public:
    /// The program's own, over the program's folder; created on first use, lives until the exit.
    static DataMgr *instance();

    /// `directory` holds the database file, the backups and the provisioning files, and ends in
    /// "/". The list is kept in the store of `dbOperator`, which must outlive this object.
    DataMgr(DBOperator &dbOperator, const QString &directory, QObject *parent = nullptr);
    ~DataMgr() override;

    const DeviceList &devices() const { return m_devices; }
    /// The jobs under way. Its signals report every job's end.
    const ListWorker &worker() const { return m_worker; }

    /// The store; owned by the DBOperator.
    DatabaseLayer *database();
    /// Opens the store, creating it on first use. False when it cannot be opened or read, or
    /// another program has the list open; lastErrorText() tells why. The store is then left
    /// untouched until it is opened again or an import replaces it.
    bool openDatabase();
    /// Call before the program ends. Gives up the job under way, makes the waiting changes, and
    /// saves an unsaved list or writes it to a backup, of which the user is told. False when
    /// neither works and the user wants to go on.
    bool keepUnsavedList();
    /// Gives up what is under way, stops the services and closes the store.
    void close();
    /// True while the store is open and, as far as is known, readable.
    bool isStoreUsable() const { return m_store.isUsable(); }
    /// True after close().
    bool isClosed() const { return m_closed; }
    QString lastErrorText() const { return m_store.reason(); }
    /// True when the store holds the present list, or is closed.
    bool isSaved() const { return !m_store.needsSave(m_devices.version()); }

    /// Replaces the list by the stored records and numbers them from 1. When they cannot be read,
    /// the job fails and the list stays.
    void recoverPreviousData();

    /// Adds one device. When its MAC is listed, asks whether to replace that device; "No" changes
    /// nothing.
    void insertContactNode(const ContactInfo &contact);
    /// Adds each device as insertContactNode() does, with one save for all. When several are listed
    /// already, the question offers an answer for all of them.
    void addContacts(const QList<ContactInfo> &contacts);
    /// Replaces the device whose running number is the record's id and whose MAC is `macBefore`, if
    /// given. A device that has moved meanwhile is found by its MAC. When another device has the
    /// new MAC, asks whether to replace that device; "No" changes nothing.
    void updateContact(const ContactInfo &contact, const QString &macBefore = {});
    /// Removes the device at `row`; a row out of range changes nothing.
    void deleteContactAt(int row);
    /// Removes every device, after a backup. When the backup fails, the user decides.
    void deleteAllContacts();

    /// Undo the last change of the list, or redo it, as a change like any other. Do nothing when
    /// there is none, or while another change is being made.
    void undo();
    void redo();
    /// The changes of this run that can be undone or redone.
    const ListHistory &history() const { return m_history; }

    /// Makes the store hold exactly the list, in one transaction, unless it already does.
    void save();

    /// See ProvisioningSource. Any thread.
    void saveList() override;
    /// See ProvisioningSource. Any thread. A phone's document takes no longer from a long list.
    bool exportDevices(int type, const QString &codecName, const QString &fileName,
                       const QString &folder) override;
    /// The same; `reason` tells the user why it failed, where that is known.
    bool exportDevices(int type, const QString &codecName, const QString &fileName,
                       const QString &folder, QString &reason) const;
    /// See ProvisioningSource. Any thread.
    int deviceCount() const override;
    /// See ProvisioningSource. Any thread.
    quint64 listVersion() const override;
    /// See ProvisioningSource. Any thread.
    bool hasDevice(const QString &mac) const override;
    /// See ProvisioningSource. Any thread.
    void requestEnded(const RequestEnd &request) override;

    /// Removes the database file, the import's work files and the provisioning files. Ignores what
    /// cannot be removed.
    void cleanUp();
    /// Removes the work files of imports: copies of the files that they read.
    void removeWorkFiles();
    /// Whether the next import replaces the list; otherwise it adds to the list.
    void setImportFlag(bool flag) { m_importFlag = flag; }
    /// Imports a device list file as the import flag says; detects its encoding. When the file is
    /// no device list, the job fails and the list stays. A list to be replaced is backed up first.
    void importFile(const QString &path);

    /// Starts the HTTP service, which asks the user for the network card and shows a failure. False
    /// when it does not run afterwards.
    bool startHttpService();
    /// Ends the service and every open connection. Always true.
    bool stopHttpService();
    HttpdControl::State httpState() const { return m_httpd.state(); }
    /// Opens and closes the service.
    HttpdControl &httpd() { return m_httpd; }
    /// Addresses on which the running service can be reached; empty when none runs.
    QStringList serverAddresses() const { return m_httpd.addresses(); }
    /// Port of the running service; 80 when none runs.
    quint16 serverPort() const { return m_httpd.port(); }

    /// Starts to answer phones that boot without a configuration; see PnPServer::start().
    bool startPnPServer();
    /// See PnPServer::stop().
    bool stopPnPServer();
    bool isPnPServerRunning() const;
    /// See DeviceLookup.
    bool macExists(const QString &mac) const override;
    /// See DeviceLookup.
    void subscribeEnded(const RequestEnd &request) override;

    /// The log of the phones' requests; both services switch it on.
    RequestLog &requestLog() { return m_requestLog; }
    /// Which devices' phones have asked for their documents.
    const PhonesSeen &phonesSeen() const { return m_phonesSeen; }

    /// True while the list is loaded or imported. Nothing in the program reads it, as the list is
    /// whole at every moment.
    bool isBusy() const { return m_busy; }
    void setBusy(bool busy) { m_busy = busy; }

    /// The length of a slice of work; see ListWorker::setSlice().
    void setSlice(int milliseconds) { m_worker.setSlice(milliseconds); }
    /// The least time between two save retries that phones' requests cause.
    void setRetryPause(int milliseconds) { m_retryPause = milliseconds; }

signals:
    /// The device list has changed.
    void updateModel();
    /// Part of the interface; nothing here calls it.
    void giveBack(const QString &text);
    /// A report of the HTTP service or the request log, for the user.
    void httpdMsg(const QString &text);
    /// history() has changed. Emitted after updateModel().
    void historyChanged();
    /// How a request ended: an HTTP request that was reported before, or any SIP request except an
    /// immediate repetition.
    void requestReported(const RequestEnd &request);

public slots:
    /// Takes two texts and does nothing.
    /// Part of the interface; nothing here calls it.
    void dealRQ(const QString &first, const QString &second);

private:
    void start(ListJob::Order order);
    void add(ListJob::Kind kind, const QList<ContactInfo> &contacts);
    void startSave(ListJob::Questions questions = ListJob::Questions::Allowed);
    void handOver(ListJob::Kind kind, DeviceList &made, bool isOtherList);
    bool mayRestore() const;
    void restore(ListJob::Kind kind);
    void updateAt(int row, const ContactInfo &contact);
    int rowNow(qint32 number, const QString &mac) const;
    std::unique_ptr<ListSource> importOf(const QString &path) const;
    void tellEnd(const ListJob &job);
    void tellSaveFailure();
    void removeDocuments();
    Q_INVOKABLE void retrySave();

    QString m_directory;
    DBOperator &m_dbOperator;
    DeviceList m_devices;
    ListHistory m_history;
    ListStore m_store;
    ListWorker m_worker;
    FolderRemover m_oldDocuments;
    bool m_failureTold = false; ///< the last save failed, and the user knows
    bool m_busy = false;
    bool m_importFlag = false;
    bool m_closed = false;
    std::atomic<bool> m_retryWanted{false}; ///< the last save failed and no retry is queued
    QElapsedTimer m_sinceRetry;
    int m_retryPause;

    PhonesSeen m_phonesSeen;
    RequestLog m_requestLog; ///< outlives the services
    PnPServer m_pnpServer;
    HttpdControl m_httpd;
};
