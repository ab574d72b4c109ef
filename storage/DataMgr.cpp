#include "storage/DataMgr.h"

#include "export/ExportBase.h"
#include "export/ExportFactory.h"
#include "export/ProvisioningDocument.h"
#include "model/FreeMemory.h"
#include "model/MacAddress.h"
#include "model/PhoneFamily.h"
#include "net/DocumentFolder.h"
#include "storage/DBOperator.h"
#include "storage/DatabaseFiles.h"
#include "storage/DatabaseLayer.h"
#include "storage/EditedDevice.h"
#include "storage/ImportLook.h"
#include "storage/ImportedDevices.h"
#include "storage/ListBoxes.h"
#include "storage/LongList.h"
#include "storage/NoDevices.h"
#include "storage/RestoredDevices.h"
#include "storage/StoredDevices.h"

#include <QFile>
#include <QThread>
#include <QTimer>

#include <memory>
#include <utility>

namespace {

constexpr int retryPauseMilliseconds = 60 * 1000;

} // namespace

DataMgr *DataMgr::instance()
{
    static auto *const dataMgr = new DataMgr(*DBOperator::instance(), programFolder());
    return dataMgr;
}

DataMgr::DataMgr(DBOperator &dbOperator, const QString &directory, QObject *parent)
    : QObject(parent)
    , m_directory(directory)
    , m_dbOperator(dbOperator)
    , m_store(dbOperator, directory)
    , m_worker(&ListBoxes::ask, [this](const ListJob &job) { tellEnd(job); })
    , m_retryPause(retryPauseMilliseconds)
    , m_phonesSeen(m_devices)
    , m_requestLog(directory + QLatin1String("log"))
    , m_pnpServer(*this)
    , m_httpd(*this, directory)
{
    connect(&m_httpd, &HttpdControl::httpdMsg, this, &DataMgr::httpdMsg);
    connect(&m_httpd, &HttpdControl::requestEnded, &m_phonesSeen, &PhonesSeen::note);
    connect(&m_httpd, &HttpdControl::requestEnded, this, &DataMgr::requestReported);
    connect(this, &DataMgr::updateModel, &m_phonesSeen, &PhonesSeen::onListChanged);
    connect(&m_requestLog, &RequestLog::failed, this, [this](const QString &reason) {
        emit httpdMsg(tr("The request log can not be written: %1. The phones get their files all "
                         "the same.")
                          .arg(reason));
    });
    connect(&m_httpd, &HttpdControl::documentsLeft, this, &DataMgr::removeDocuments);
    connect(&m_httpd, &HttpdControl::httpdAddressChanged, &m_pnpServer,
            &PnPServer::setHttpdAddress);
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
    m_failureTold = false;
    const bool opened = m_store.open(m_devices.snapshot());
    if (!m_store.isElsewhere())
        m_oldDocuments.removeLeft(m_directory + DocumentFolder::rootName);
    return opened;
}

bool DataMgr::keepUnsavedList()
{
    m_worker.giveUp();
    m_worker.finish();
    if (m_closed || isSaved())
        return true;
    startSave(ListJob::Questions::Refused);
    m_worker.finish();
    if (isSaved())
        return true;
    const QString reason = m_store.reason();
    const std::unique_ptr<ListBackup> backup = m_store.backUp(m_devices.snapshot());
    ListBackup::Step step = ListBackup::Step::More;
    while (step == ListBackup::Step::More)
        step = backup->step();
    if (step == ListBackup::Step::Done) {
        ListBoxes::tellKeptInCopy(reason, m_store.backupPath());
        return true;
    }
    return ListBoxes::mayLoseList(reason);
}

void DataMgr::close()
{
    if (m_closed)
        return;
    m_closed = true;
    m_worker.stop();
    stopPnPServer();
    stopHttpService();
    m_requestLog.stop();
    m_store.close();
}

void DataMgr::start(ListJob::Order order)
{
    ListJob::Effects effects;
    effects.handOver = [this, kind = order.kind, isOtherList = order.dropsList](DeviceList &made) {
        handOver(kind, made, isOtherList);
    };
    effects.removeStore = [this] { cleanUp(); };
    m_worker.start(std::make_unique<ListJob>(m_devices, m_store, effects, std::move(order)));
}

void DataMgr::startSave(ListJob::Questions questions)
{
    ListJob::Order order;
    order.questions = questions;
    start(std::move(order));
}

void DataMgr::handOver(ListJob::Kind kind, DeviceList &made, bool isOtherList)
{
    const DeviceListSnapshot before = m_devices.snapshot();
    m_devices.adopt(made);
    if (isOtherList)
        removeDocuments();
    m_history.note(kind, isOtherList, before, m_devices.snapshot());
    emit updateModel();
    emit historyChanged();
}

void DataMgr::recoverPreviousData()
{
    if (m_worker.putOff([=] { recoverPreviousData(); }))
        return;
    m_busy = true;
    ListJob::Order order;
    order.kind = ListJob::Kind::Load;
    order.source = std::make_unique<StoredDevices>(m_store);
    start(std::move(order));
}

void DataMgr::insertContactNode(const ContactInfo &contact)
{
    add(ListJob::Kind::Insert, {contact});
}

void DataMgr::addContacts(const QList<ContactInfo> &contacts)
{
    add(ListJob::Kind::Add, contacts);
}

void DataMgr::add(ListJob::Kind kind, const QList<ContactInfo> &contacts)
{
    if (m_worker.putOff([=] { add(kind, contacts); }))
        return;
    ListJob::Order order;
    order.kind = kind;
    order.source = std::make_unique<MergedDevices>(m_devices.snapshot(), contacts);
    start(std::move(order));
}

void DataMgr::updateContact(const ContactInfo &contact, const QString &macBefore)
{
    const int numbered = m_devices.rowOfNumber(contact.id);
    const QString macThere = numbered < 0 ? QString() : m_devices.at(numbered).info.mac;
    const QString mac = macBefore.isNull() ? macThere : macBefore;
    const int row = rowNow(contact.id, mac);
    if (!m_worker.putOff([=] { updateAt(rowNow(contact.id, mac), contact); }))
        updateAt(row, contact);
}

void DataMgr::updateAt(int row, const ContactInfo &contact)
{
    if (row < 0) {
        emit updateModel();
        startSave();
        return;
    }
    ListJob::Order order;
    order.kind = ListJob::Kind::Edit;
    order.source = std::make_unique<EditedDevice>(m_devices.snapshot(), row, contact);
    start(std::move(order));
}

/// The row of the device that had this number when its change was put off. Changes made since then
/// may have moved it, or another device to its row.
int DataMgr::rowNow(qint32 number, const QString &mac) const
{
    const int row = m_devices.rowOfNumber(number);
    return row >= 0 && m_devices.at(row).info.mac == mac ? row : m_devices.rowOfMac(mac);
}

void DataMgr::deleteContactAt(int row)
{
    if (row < 0 || row >= m_devices.size()) {
        emit updateModel();
        return;
    }
    const QString mac = m_devices.at(row).info.mac;
    if (m_worker.putOff([=] { deleteContactAt(rowNow(row + 1, mac)); }))
        return;
    const DeviceListSnapshot before = m_devices.snapshot();
    m_devices.removeAt(row);
    m_history.add(ListChange::between(ListChange::Kind::Delete, before, m_devices.snapshot()));
    emit updateModel();
    emit historyChanged();
    startSave();
}

void DataMgr::deleteAllContacts()
{
    if (m_worker.putOff([=] { deleteAllContacts(); }))
        return;
    ListJob::Order order;
    order.kind = ListJob::Kind::Clear;
    order.source = std::make_unique<NoDevices>();
    order.dropsList = true;
    start(std::move(order));
}

void DataMgr::undo()
{
    restore(ListJob::Kind::Undo);
}

void DataMgr::redo()
{
    restore(ListJob::Kind::Redo);
}

void DataMgr::restore(ListJob::Kind kind)
{
    if (!mayRestore() || m_worker.putOff([=, count = m_history.changeCount()] {
            if (count == m_history.changeCount())
                restore(kind);
        }))
        return;
    const bool isUndo = kind == ListJob::Kind::Undo;
    const ListChange *const change = isUndo ? m_history.toUndo() : m_history.toRedo();
    if (!change)
        return;
    const DeviceRows &gone = isUndo ? change->after : change->before;
    const DeviceRows &put = isUndo ? change->before : change->after;
    ListJob::Order order;
    order.kind = kind;
    order.dropsList = change->dropsList();
    order.source =
        std::make_unique<RestoredDevices>(m_devices.snapshot(), change->row, gone.size(), put);
    start(std::move(order));
}

/// False while another change is being made: the user could mean either of the two.
bool DataMgr::mayRestore() const
{
    const ListJob *const job = m_worker.job();
    return !job || job->hasChangedList() || job->kind() == ListJob::Kind::Undo ||
           job->kind() == ListJob::Kind::Redo || job->kind() == ListJob::Kind::Save;
}

void DataMgr::save()
{
    if (!m_worker.putOff([=] { save(); }))
        startSave();
}

std::unique_ptr<ListSource> DataMgr::importOf(const QString &path) const
{
    DeviceListSnapshot list = m_devices.snapshot();
    DeviceListSnapshot dropped;
    if (m_importFlag)
        std::swap(list, dropped);
    return std::make_unique<ImportedDevices>(list, dropped, m_directory, path);
}

void DataMgr::importFile(const QString &path)
{
    const bool flag = m_importFlag;
    if (m_worker.putOff([=] {
            setImportFlag(flag);
            importFile(path);
        }))
        return;
    ListJob::Order order;
    order.kind = ListJob::Kind::Import;
    order.dropsList = m_importFlag;
    order.replacesStore = m_importFlag;
    if (m_store.isElsewhere())
        order.refusal = m_store.reason(); // the other program's work files lie where ours would
    else
        order.source = importOf(path);
    start(std::move(order));
}

void DataMgr::tellEnd(const ListJob &job)
{
    if (job.kind() == ListJob::Kind::Load)
        m_busy = false;
    m_store.setWaitsForLocks(true);
    if (job.hasChangedList() && isLongList(m_devices.size()))
        QTimer::singleShot(0, this, &giveBackFreeMemory);
    const bool quiet = m_closed || job.questions() == ListJob::Questions::Refused;
    m_retryWanted = m_store.isBehind();
    if (isSaved())
        m_failureTold = false;
    else if (!quiet && job.phase() == ListJob::Phase::Done)
        tellSaveFailure();
    const bool isToldElsewhere =
        job.kind() == ListJob::Kind::Load || job.kind() == ListJob::Kind::Import;
    if (!quiet && job.phase() == ListJob::Phase::Failed && !isToldElsewhere)
        ListBoxes::tellChangeFailed(job.reason());
    const QString copy = quiet || !isSaved() ? QString() : m_store.takeCopyPath();
    if (!copy.isEmpty())
        ListBoxes::tellDatabaseCopied(copy);
}

void DataMgr::tellSaveFailure()
{
    if (!std::exchange(m_failureTold, true))
        ListBoxes::tellSaveFailed(m_store.reason(), m_store.isUsable());
}

void DataMgr::saveList()
{
    if (QThread::currentThread() == thread()) {
        save();
    } else if (m_retryWanted.exchange(false)) {
        // Not written here: the database connection belongs to the GUI thread.
        QMetaObject::invokeMethod(this, "retrySave", Qt::QueuedConnection);
    }
}

/// However many requests come from the network, they open no box and never make the window wait
/// for a lock.
void DataMgr::retrySave()
{
    const bool tooEarly = m_sinceRetry.isValid() && m_sinceRetry.elapsed() < m_retryPause;
    if (tooEarly || !m_worker.isIdle()) {
        m_retryWanted = m_store.isBehind();
        return;
    }
    m_sinceRetry.start();
    m_store.setWaitsForLocks(false);
    startSave(ListJob::Questions::Refused);
}

bool DataMgr::exportDevices(int type, const QString &codecName, const QString &fileName,
                            const QString &folder)
{
    QString unused;
    return exportDevices(type, codecName, fileName, folder, unused);
}

bool DataMgr::exportDevices(int type, const QString &codecName, const QString &fileName,
                            const QString &folder, QString &reason) const
{
    const std::unique_ptr<ExportBase> exporter(ExportFactory::instance()->createExporter(type));
    if (!exporter)
        return false;
    const QString filePath = folder + QLatin1Char('/') + fileName;
    const DeviceListSnapshot list = m_devices.snapshot();
    QList<ContactInfo> devices;
    if (isFamilyDocument(type)) {
        // These exporters search for the first device with the MAC in the file's name. The look-up
        // spares them the other devices.
        const int row = list.rowOfBareMac(provisioningFileMac(filePath));
        if (row >= 0)
            devices.append(list.at(row).info);
    } else {
        devices = list.contacts();
    }
    const bool exported = exporter->exportFile(codecName, filePath, devices);
    reason = exporter->reason();
    return exported;
}

int DataMgr::deviceCount() const
{
    return m_devices.snapshot().size();
}

quint64 DataMgr::listVersion() const
{
    return m_devices.version();
}

void DataMgr::cleanUp()
{
    removeDatabase(m_directory + databaseName);
    removeWorkFiles();
    removeDocuments();
}

/// An open service removes them itself: only it knows which document is being written or read.
void DataMgr::removeDocuments()
{
    if (m_store.isElsewhere())
        return;
    if (!m_httpd.clearDocuments())
        m_oldDocuments.remove(m_directory + DocumentFolder::rootName);
}

void DataMgr::removeWorkFiles()
{
    if (m_store.isElsewhere())
        return;
    ImportedDevices::removeWorkFiles(m_directory);
    ImportLook::removeWorkFiles(m_directory);
}

bool DataMgr::startHttpService()
{
    if (m_closed)
        return false;
    m_requestLog.start();
    return m_httpd.open();
}

bool DataMgr::stopHttpService()
{
    m_httpd.close();
    m_requestLog.flush();
    return true;
}

bool DataMgr::startPnPServer()
{
    m_requestLog.start();
    return m_pnpServer.start();
}

bool DataMgr::stopPnPServer()
{
    return m_pnpServer.stop();
}

bool DataMgr::isPnPServerRunning() const
{
    return m_pnpServer.isListening();
}

bool DataMgr::macExists(const QString &mac) const
{
    return m_devices.rowOfBareMac(mac.toLower()) >= 0;
}

bool DataMgr::hasDevice(const QString &mac) const
{
    return m_devices.snapshot().rowOfBareMac(bareMac(mac)) >= 0;
}

void DataMgr::requestEnded(const RequestEnd &request)
{
    m_requestLog.note(request);
}

void DataMgr::subscribeEnded(const RequestEnd &request)
{
    m_requestLog.note(request);
    if (request.outcome != RequestOutcome::Repeated)
        emit requestReported(request);
}

void DataMgr::dealRQ(const QString &first, const QString &second)
{
    Q_UNUSED(first)
    Q_UNUSED(second)
}
