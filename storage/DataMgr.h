#pragma once

#include "model/DeviceList.h"
#include "model/DeviceLookup.h"
#include "model/ImportTarget.h"
#include "model/ProgramFolder.h"
#include "model/ProvisioningSource.h"
#include "net/PnPServer.h"
#include "storage/ListSaver.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class DatabaseLayer;
class DBOperator;
class HttpdService;
class ParseBase;

/// The one coordinator: owns the device list, writes it through to the store, asks about duplicate
/// MACs, and owns the provisioning services.
///
/// GUI thread, but for saveList() and exportDevices(), which connection threads call. Operations
/// return whether they succeeded; what the user has to know about a save that failed is told from
/// here, once until a save succeeds again.
class DataMgr : public QObject, public ProvisioningSource, public DeviceLookup, public ImportTarget
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

    /// The store, for whoever only keeps the pointer.
    DatabaseLayer *database();
    /// Opens the store, creating it on first use. False when it cannot be opened or read; it is
    /// then left untouched for the rest of the run and lastErrorText() tells why.
    bool openDatabase();
    /// Before the program ends: a list that could not be saved so far is saved, or written to a
    /// backup, of which the user is told. False when neither works and the user wants to go on.
    bool keepUnsavedList();
    /// Stops the services and closes the store.
    void close();
    /// True from a successful openDatabase() to close(), unless reading the rows failed since.
    bool isStoreUsable() const { return m_saver.isUsable(); }
    QString lastErrorText() const { return m_saver.lastErrorText(); }

    /// Replaces the list by the stored records and numbers them from 1. False, with the list as it
    /// was, when they cannot be read.
    bool recoverPreviousData();

    /// Adds one device. When its MAC is listed, asks whether to replace that device; "No" changes
    /// nothing.
    void insertContactNode(const ContactInfo &contact);
    /// Adds each device as insertContactNode() does, with one save for all.
    /// When several are listed already, the question offers an answer for all of them.
    void addContacts(const QList<ContactInfo> &contacts) override;
    /// Replaces the device whose running number equals the record's id.
    void updateContact(const ContactInfo &contact);
    /// Removes the device at `row`; a row out of range changes nothing.
    void deleteContactAt(int row);
    /// Removes every device, after writing them to a backup. When that fails the user decides;
    /// false when nothing was deleted.
    bool deleteAllContacts();

    /// Makes the store hold exactly the list, in one transaction; does nothing when it does
    /// already.
    bool save();

    /// See ProvisioningSource. Any thread.
    void saveList() override;
    /// See ProvisioningSource. Any thread. Takes no longer for a long list than for a short one.
    bool exportDevices(int type, const QString &codecName, const QString &fileName,
                       const QString &folder) override;

    /// Removes the database file, the import's work files and the provisioning files. What cannot
    /// be removed stays, silently.
    void cleanUp();
    /// Removes what imports leave: copies of the file that they read.
    void removeWorkFiles();
    /// True: the next import replaces the list. False: it adds to it.
    void setImportFlag(bool flag) { m_importFlag = flag; }
    /// Imports a device list file as the import flag says; sees for itself in which encoding it is.
    /// False, with the list as it was, when it is no device list.
    bool importFile(const QString &path);
    /// See ImportTarget: empties the list when the import flag is set, after writing it to a
    /// backup, and removes the provisioning files.
    bool clearOld() override;
    /// See ImportTarget.
    void keepAlive() override;

    /// Starts the HTTP service, which asks the user for the network card. False when it does not
    /// run afterwards; the user knows why.
    bool startHttpService();
    /// Ends the service and every open connection. True also when none runs.
    bool stopHttpService();
    /// Addresses on which the running service can be reached; empty when none runs.
    QStringList serverAddresses() const;
    /// Port of the running service; 80 when none runs.
    quint16 serverPort() const;

    /// Starts to answer telephones that boot without a configuration; see PnPServer::start().
    bool startPnPServer();
    /// See PnPServer::stop().
    bool stopPnPServer();
    bool isPnPServerRunning() const;
    /// See DeviceLookup.
    bool macExists(const QString &mac) const override;

    /// True while a long change is under way, so that views do not act on a list in the making.
    bool isBusy() const { return m_busy; }
    void setBusy(bool busy);
    /// True while events are handled in the middle of a long change. Devices that are added or
    /// updated then are taken after it; deleting, importing and saving is refused. Whoever wants to
    /// close the store has to wait for the end of the change.
    bool isBreathing() const { return m_breathing; }

signals:
    /// The device list has changed.
    void updateModel();
    /// The first devices of a long stored list are listed; the rest is still being read, up to
    /// `stored` rows.
    void listBegun(int stored);
    /// A long change has made its list, which may be shown; to save it takes longer still.
    void listMade();
    void giveBack(const QString &text);
    /// A report of the HTTP service for the user.
    void httpdMsg(const QString &text);

public slots:
    /// Takes two texts and does nothing.
    void dealRQ(const QString &first, const QString &second);

private:
    enum class Replace { AskOne, AskMany, All, None };
    bool addOrReplace(const ContactInfo &contact, Replace &replace);
    bool hasSeveralListed(const QList<ContactInfo> &contacts, int first) const;
    std::unique_ptr<ParseBase> createParser();
    void removeProvisioningFiles();
    bool trySave(ListSaver::Ask ask);
    void saveAndAnnounce();
    void tellSaveFailure();
    void deleteHttpService();
    bool putOff(const std::function<void()> &change);
    void breathe(QEventLoop::ProcessEventsFlags flags);

    QString m_directory;
    DBOperator &m_dbOperator;
    DeviceList m_devices;
    ListSaver m_saver;
    bool m_failureTold = false; ///< the last save failed, and the user knows
    bool m_busy = false;
    bool m_breathing = false;
    /// A list is being added to, or imported in place of, one that the table holds whole.
    bool m_halfMade = false;
    QElapsedTimer m_sinceBreath;
    std::vector<std::function<void()>> m_putOff; ///< changes that wait for the end of a long one
    bool m_importFlag = false;
    bool m_closed = false;
    std::atomic<bool> m_retryWanted{false}; ///< the last save failed and no retry is queued

    PnPServer m_pnpServer;
    HttpdService *m_httpdService = nullptr;
    bool m_httpdStarting = false;
};
