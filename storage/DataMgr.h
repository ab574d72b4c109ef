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

/// The one coordinator: it owns the device list, the store, the work on both and the provisioning
/// services, and puts the questions to the user.
///
/// Every change of the list is a job of the ListWorker, or waits there for its turn. A short one is
/// done when the call returns, a long one some turns of the event loop later: worker() tells when.
/// A save that fails is told from here, once until one succeeds again.
///
/// GUI thread, but for saveList() and exportDevices(), which connection threads call.
class DataMgr : public QObject, public ProvisioningSource, public DeviceLookup
{
    Q_OBJECT
public:
    /// The program's own, over the program's folder; created on first use, lives until the exit.
    static DataMgr *instance();

    /// `directory` holds the database file, the backups and the provisioning files, and ends in
    /// "/". The store of `dbOperator`, which must outlive this object, is the list's.
    DataMgr(DBOperator &dbOperator, const QString &directory, QObject *parent = nullptr);
    ~DataMgr() override;

    const DeviceList &devices() const { return m_devices; }
    /// What is under way. Its signals tell of every job's end.
    const ListWorker &worker() const { return m_worker; }

    /// The store, for whoever only keeps the pointer.
    DatabaseLayer *database();
    /// Opens the store, creating it on first use. False when it cannot be opened or read, or
    /// another program has the list open; it is then left untouched for the rest of the run and
    /// lastErrorText() tells why.
    bool openDatabase();
    /// Before the program ends: a list that could not be saved so far is saved, or written to a
    /// backup, of which the user is told. False when neither works and the user wants to go on.
    bool keepUnsavedList();
    /// Gives up what is under way, stops the services and closes the store.
    void close();
    /// True from a successful openDatabase() to close(), unless reading the rows failed since.
    bool isStoreUsable() const { return m_store.isUsable(); }
    /// True after close().
    bool isClosed() const { return m_closed; }
    QString lastErrorText() const { return m_store.reason(); }
    /// True when the store holds the list as it is.
    bool isSaved() const { return !m_store.needsSave(m_devices.version()); }

    /// Replaces the list by the stored records and numbers them from 1. The job fails, with the
    /// list as it was, when they cannot be read.
    void recoverPreviousData();

    /// Adds one device. When its MAC is listed, asks whether to replace that device; "No" changes
    /// nothing.
    void insertContactNode(const ContactInfo &contact);
    /// Adds each device as insertContactNode() does, with one save for all.
    /// When several are listed already, the question offers an answer for all of them.
    void addContacts(const QList<ContactInfo> &contacts);
    /// Replaces the device whose running number equals the record's id and whose MAC is
    /// `macBefore`, if given. One that has moved meanwhile is found by that MAC. When another
    /// device has the record's MAC, asks whether to replace that one; "No" changes nothing.
    void updateContact(const ContactInfo &contact, const QString &macBefore = {});
    /// Removes the device at `row`; a row out of range changes nothing.
    void deleteContactAt(int row);
    /// Removes every device, after writing them to a backup. When that fails the user decides.
    void deleteAllContacts();

    /// Takes the last change of the list back, or makes it again: a change like any other. Nothing
    /// happens when there is none, and while another change is being made.
    void undo();
    void redo();
    /// The changes of this run.
    const ListHistory &history() const { return m_history; }

    /// Makes the store hold exactly the list, in one transaction; does nothing when it does
    /// already.
    void save();

    /// See ProvisioningSource. Any thread.
    void saveList() override;
    /// See ProvisioningSource. Any thread. Takes no longer for a long list than for a short one.
    bool exportDevices(int type, const QString &codecName, const QString &fileName,
                       const QString &folder) override;
    /// The same; also says why it failed, for the user, where that is known.
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

    /// Removes the database file, the import's work files and the provisioning files. What cannot
    /// be removed stays, silently.
    void cleanUp();
    /// Removes what imports leave: copies of the file that they read.
    void removeWorkFiles();
    /// True: the next import replaces the list. False: it adds to it.
    void setImportFlag(bool flag) { m_importFlag = flag; }
    /// Imports a device list file as the import flag says; sees for itself in which encoding it is.
    /// The job fails, with the list as it was, when it is no device list. When the list is to be
    /// replaced, it is written to a backup before.
    void importFile(const QString &path);

    /// Starts the HTTP service, which asks the user for the network card. False when it does not
    /// run afterwards; the user knows why.
    bool startHttpService();
    /// Ends the service and every open connection. True also when none runs.
    bool stopHttpService();
    HttpdControl::State httpState() const { return m_httpd.state(); }
    /// Who opens and closes it.
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

    /// Set by whoever makes a change, and read by whoever shows the list. The list is whole at
    /// every moment, so that nothing here asks for it.
    bool isBusy() const { return m_busy; }
    void setBusy(bool busy) { m_busy = busy; }

    /// How long a slice of work may be; see ListWorker::setSlice().
    void setSlice(int milliseconds) { m_worker.setSlice(milliseconds); }
    /// How long saves that phones cause stand back after one has failed.
    void setRetryPause(int milliseconds) { m_retryPause = milliseconds; }

signals:
    /// The device list has changed.
    void updateModel();
    /// Part of the interface; nothing here calls it.
    void giveBack(const QString &text);
    /// A report of the HTTP service for the user.
    void httpdMsg(const QString &text);
    /// history() has changed: after updateModel(), which tells of the list.
    void historyChanged();
    /// How a request ended: by HTTP one that was reported before, by SIP any but one that was
    /// repeated at once.
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
