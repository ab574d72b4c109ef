#include "storage/DataMgr.h"

#include "export/ExportBase.h"
#include "export/ExportFactory.h"
#include "export/ProvisioningDocument.h"
#include "model/DebugLog.h"
#include "model/ExportType.h"
#include "net/HttpdService.h"
#include "storage/DBOperator.h"
#include "storage/DatabaseLayer.h"
#include "storage/ScopedTransaction.h"
#include "widgets/Modal.h"

#include <QDir>
#include <QFile>
#include <QScopedValueRollback>
#include <QThread>
#include <QTime>

#include <cstdlib>
#include <limits>
#include <memory>

namespace {

constexpr quint64 neverSaved = std::numeric_limits<quint64>::max();

// The order is the order of removal.
const QStringList storedFiles = {QStringLiteral("phonebook.db"), QStringLiteral("tmp.csv"),
                                 QStringLiteral("tmp1.csv"), QStringLiteral("tmp2.csv")};
const QString provisioningRoot = QStringLiteral("HTTPD");

} // namespace

DataMgr *DataMgr::instance()
{
    static auto *const dataMgr = new DataMgr(*DBOperator::instance(), programFolder());
    return dataMgr;
}

DataMgr::DataMgr(DBOperator &dbOperator, const QString &directory, QObject *parent)
    : QObject(parent)
    , m_dbOperator(dbOperator)
    , m_directory(directory)
    , m_backup(directory)
    , m_savedVersion(neverSaved)
    , m_pnpServer(*this)
{
}

DataMgr::~DataMgr()
{
    stopHttpService();
}

DatabaseLayer *DataMgr::database()
{
    return m_dbOperator.database();
}

bool DataMgr::openDatabase()
{
    m_closed = false;
    DatabaseLayer *const store = database();
    const bool opened = store->openDatabase();
    const int stored = opened ? store->countContacts() : -1;
    m_storeUsable = stored >= 0;
    if (!m_storeUsable) {
        m_lastErrorText = store->lastErrorText();
        return false;
    }
    m_storedRowsKnown = stored == 0;
    if (stored == 0 && m_devices.size() == 0)
        m_savedVersion = m_devices.version();
    return true;
}

void DataMgr::close()
{
    if (m_closed)
        return;
    if (m_failureTold)
        save();
    m_closed = true;
    stopPnPServer();
    stopHttpService();
    database()->closeDatabase();
    m_storeUsable = false;
}

bool DataMgr::recoverPreviousData()
{
    if (!m_storeUsable)
        return false;
    m_busy = true;
    const QList<ContactInfo> stored = m_dbOperator.load();
    m_lastErrorText = database()->lastErrorText();
    const bool loaded = m_lastErrorText.isEmpty();
    if (loaded) {
        qCDebug(debugLog) << "queryData contact list size = " << stored.size();
        m_devices.assign(stored);
        // Rows that read back as other records, or under other numbers, are not yet the list.
        bool same = stored.size() == database()->countContacts();
        for (int row = 0; same && row < stored.size(); ++row)
            same = stored.at(row).id == row + 1;
        m_storedRowsKnown = true;
        m_savedVersion = same ? m_devices.version() : neverSaved;
        emit updateModel();
    } else {
        m_storeUsable = false;
    }
    m_busy = false;
    return loaded;
}

void DataMgr::insertContactNode(const ContactInfo &contact)
{
    if (addOrReplace(contact))
        saveAndAnnounce();
}

void DataMgr::addContacts(const QList<ContactInfo> &contacts)
{
    for (const ContactInfo &contact : contacts)
        addOrReplace(contact);
    saveAndAnnounce();
}

/// False when the user kept the device that has this MAC already.
bool DataMgr::addOrReplace(const ContactInfo &contact)
{
    qCDebug(debugLog) << "insertContactNode.";
    if (m_devices.rowOfMac(contact.mac) < 0) {
        m_devices.append(contact);
        return true;
    }
    const QString text = QLatin1String("MAC:") + contact.mac + tr(" has already exist") +
                         QLatin1Char(',') + tr("do you want to replace it?");
    if (Modal::question(nullptr, tr("Replace action"), text) == Modal::Answer::No || m_closed)
        return false;
    // The list may have changed while the question was open.
    const int row = m_devices.rowOfMac(contact.mac);
    if (row < 0)
        m_devices.append(contact);
    else
        m_devices.replaceAt(row, contact);
    return true;
}

void DataMgr::updateContact(const ContactInfo &contact)
{
    const int row = m_devices.rowOfNumber(contact.id);
    if (row >= 0)
        m_devices.replaceAt(row, contact);
    saveAndAnnounce();
}

void DataMgr::deleteContactAt(int row)
{
    if (row >= 0 && row < m_devices.size()) {
        m_devices.removeAt(row);
        save();
    }
    emit updateModel();
}

bool DataMgr::deleteAllContacts()
{
    if (m_devices.size() > 0 && !backUp(m_devices.snapshot().contacts()))
        return false;
    m_devices.clear();
    saveAndAnnounce();
    return true;
}

void DataMgr::saveAndAnnounce()
{
    save();
    emit updateModel();
}

bool DataMgr::save()
{
    Q_ASSERT(QThread::currentThread() == thread());
    const DeviceListSnapshot list = m_devices.snapshot();
    if (m_savedVersion == list.version())
        return true;
    if (m_saving)
        return false; // asked for while a question of the save below is open
    const QScopedValueRollback<bool> saving(m_saving, true);
    if (!m_storeUsable)
        return saveFailed(m_lastErrorText);
    if (!m_storedRowsKnown && !keepStoredRows())
        return saveFailed(m_lastErrorText);
    if (m_closed)
        return false;
    if (!writeList(list))
        return saveFailed(database()->lastErrorText());
    m_savedVersion = list.version();
    m_storedRowsKnown = true;
    m_failureTold = false;
    m_retryWanted = false;
    return true;
}

/// One transaction, so that whatever stops the program leaves the old list in the file or the new
/// one. Clearing first settles that rows of earlier saves bear the same ids: the list is the
/// authority.
bool DataMgr::writeList(const DeviceListSnapshot &list)
{
    DatabaseLayer *const store = database();
    ScopedTransaction transaction(*store);
    if (!transaction.isOpen())
        return false;
    store->clearContacts();
    return m_dbOperator.save(list) && store->mergeNewRecords() && transaction.commit();
}

/// Before the first save of a run that never loaded them, the stored rows are about to go.
bool DataMgr::keepStoredRows()
{
    const QList<ContactInfo> stored = m_dbOperator.load();
    m_lastErrorText = database()->lastErrorText();
    return m_lastErrorText.isEmpty() && (stored.isEmpty() || backUp(stored));
}

/// True when the devices are safe in a backup, or the user goes on without.
bool DataMgr::backUp(const QList<ContactInfo> &devices)
{
    if (m_backup.write(devices))
        return true;
    m_lastErrorText = m_backup.errorText();
    return Modal::question(nullptr, tr("Backup Error"),
                           tr("The backup of the device list can not be written: %1. "
                              "Do you want to go on without a backup?")
                               .arg(m_backup.errorText())) == Modal::Answer::Yes;
}

bool DataMgr::saveFailed(const QString &reason)
{
    m_lastErrorText = reason;
    m_retryWanted = true;
    if (!m_failureTold) {
        m_failureTold = true;
        Modal::message(nullptr, QMessageBox::Warning, tr("Save Error"),
                       tr("The device list can not be saved: %1. "
                          "It is kept in the window and will be saved with the next change.")
                           .arg(reason));
    }
    return false;
}

void DataMgr::saveList()
{
    if (QThread::currentThread() == thread()) {
        save();
    } else if (m_retryWanted.exchange(false)) {
        // Never written from here: the connection to the database belongs to the GUI thread.
        QMetaObject::invokeMethod(
            this, [this] { save(); }, Qt::QueuedConnection);
    }
}

bool DataMgr::exportDevices(int type, const QString &codecName, const QString &fileName,
                            const QString &folder)
{
    const std::unique_ptr<ExportBase> exporter(ExportFactory::instance()->createExporter(type));
    if (!exporter)
        return false;
    const QString filePath = folder + QLatin1Char('/') + fileName;
    const DeviceListSnapshot list = m_devices.snapshot();
    QList<ContactInfo> devices;
    if (type == DeskPhoneXml || type == CordlessXml) {
        // These exporters write the first device of the MAC in the file's name; looked up here, it
        // is the only one that they have to examine.
        const int row = list.rowOfBareMac(provisioningFileMac(filePath));
        if (row >= 0)
            devices.append(list.at(row).info);
    } else {
        devices = list.contacts();
    }
    return exporter->exportFile(codecName, filePath, devices);
}

void DataMgr::cleanUp()
{
    for (const QString &name : storedFiles)
        QFile::remove(m_directory + name);
    QDir(m_directory + provisioningRoot).removeRecursively();
}

bool DataMgr::startHttpService()
{
    if (m_httpdStarting || m_closed)
        return false;
    if (!m_httpdService) {
        m_httpdService = new HttpdService(*this, m_directory);
        connect(m_httpdService, &HttpdService::httpdMsg, this, &DataMgr::httpdMsg,
                Qt::UniqueConnection);
        connect(m_httpdService, &HttpdService::httpdAddressChanged, &m_pnpServer,
                &PnPServer::setHttpdAddress);
    }
    m_httpdStarting = true;
    const bool started = m_httpdService->start();
    m_httpdStarting = false;
    if (!started || m_closed) {
        deleteHttpService();
        return false;
    }
    std::srand(static_cast<unsigned>(QTime(0, 0).secsTo(QTime::currentTime())));
    return true;
}

bool DataMgr::stopHttpService()
{
    if (!m_httpdService)
        return true;
    if (m_httpdStarting)
        // It waits for the user further up the stack; startHttpService() deletes it.
        m_httpdService->stop();
    else
        deleteHttpService();
    return true;
}

void DataMgr::deleteHttpService()
{
    m_httpdService->stop();
    delete m_httpdService;
    m_httpdService = nullptr;
}

QStringList DataMgr::serverAddresses() const
{
    return m_httpdService ? m_httpdService->addresses() : QStringList();
}

quint16 DataMgr::serverPort() const
{
    return m_httpdService ? m_httpdService->port() : quint16(80);
}

bool DataMgr::startPnPServer()
{
    return m_pnpServer.start();
}

bool DataMgr::stopPnPServer()
{
    return m_pnpServer.stop();
}

bool DataMgr::macExists(const QString &mac) const
{
    return m_devices.rowOfBareMac(mac.toLower()) >= 0;
}

void DataMgr::dealRQ(const QString &first, const QString &second)
{
    Q_UNUSED(first)
    Q_UNUSED(second)
}
