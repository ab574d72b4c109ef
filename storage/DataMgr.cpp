#include "storage/DataMgr.h"

#include "export/ExportBase.h"
#include "export/ExportFactory.h"
#include "export/ProvisioningDocument.h"
#include "import/ParseBase.h"
#include "import/ParseFactory.h"
#include "model/DebugLog.h"
#include "model/ExportType.h"
#include "net/HttpdService.h"
#include "storage/DBOperator.h"
#include "storage/DatabaseLayer.h"
#include "widgets/Modal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QSet>
#include <QThread>
#include <QTime>

#include <cstdlib>
#include <memory>
#include <utility>

namespace {

// Each breath costs what the window then has to paint; the wheel turns every 80 ms or so.
constexpr int millisecondsBetweenBreaths = 20;
constexpr int devicesBetweenBreaths = 100;

const QString databaseName = QStringLiteral("phonebook.db");
const QString provisioningRoot = QStringLiteral("HTTPD");

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
    , m_saver(m_devices, dbOperator, directory,
              [this] { breathe(QEventLoop::ExcludeSocketNotifiers); })
    , m_pnpServer(*this)
{
    m_sinceBreath.start();
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
    return m_saver.open();
}

bool DataMgr::keepUnsavedList()
{
    // The table holds the whole list from before; half of the next one is not worth more.
    if (m_closed || m_halfMade || m_saver.isSaved() || m_saver.save(ListSaver::Ask::Never))
        return true;
    const QString reason = m_saver.lastErrorText();
    if (m_saver.backUp(m_devices.snapshot().contacts(), ListSaver::Ask::Never)) {
        Modal::message(nullptr, QMessageBox::Warning, tr("Save Error"),
                       tr("The device list can not be saved: %1. A copy of it is kept in %2.")
                           .arg(reason, m_saver.backupPath()));
        return true;
    }
    return Modal::question(nullptr, tr("Save Error"),
                           tr("Neither the device list nor a copy of it can be written: %1. "
                              "Do you want to quit and lose the changes?")
                               .arg(reason)) != Modal::Answer::No;
}

void DataMgr::close()
{
    if (m_closed)
        return;
    m_closed = true;
    stopPnPServer();
    stopHttpService();
    m_saver.close();
}

/// What reaches the list in the middle of a long change (by a screen reader's press, say; mouse and
/// keys wait) would be saved into its open transaction, and with a list that is not whole.
bool DataMgr::putOff(const std::function<void()> &change)
{
    if (m_breathing)
        m_putOff.push_back(change);
    return m_breathing;
}

void DataMgr::setBusy(bool busy)
{
    m_busy = busy;
    if (busy || m_breathing || m_putOff.empty())
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            const auto changes = std::exchange(m_putOff, {});
            for (const auto &change : changes)
                change();
        },
        Qt::QueuedConnection);
}

bool DataMgr::recoverPreviousData()
{
    if (m_breathing)
        return false;
    m_busy = true;
    const QScopedValueRollback<bool> halfMade(m_halfMade, true);
    const bool wasEmpty = m_devices.size() == 0;
    bool begun = false;
    const int rows = m_saver.isUsable() ? database()->countContacts() : 0;
    QList<ContactInfo> stored;
    const bool loaded = m_saver.load(stored, [&](const QList<ContactInfo> &soFar) {
        if (wasEmpty && !begun) {
            begun = true;
            m_devices.assign(soFar);
            emit listBegun(rows);
        }
        breathe(QEventLoop::ExcludeSocketNotifiers);
    });
    if (begun && !loaded) {
        m_devices.clear();
        m_saver.markEmpty();
        emit updateModel();
    }
    if (loaded) {
        qCDebug(debugLog) << "queryData contact list size = " << stored.size();
        m_devices.assign(stored);
        m_saver.markLoaded(stored);
        emit updateModel();
    }
    setBusy(false);
    return loaded;
}

void DataMgr::insertContactNode(const ContactInfo &contact)
{
    if (putOff([=] { insertContactNode(contact); }))
        return;
    Replace replace = Replace::AskOne;
    if (addOrReplace(contact, replace))
        saveAndAnnounce();
}

void DataMgr::addContacts(const QList<ContactInfo> &contacts)
{
    if (putOff([=] { addContacts(contacts); }))
        return;
    m_halfMade = m_halfMade || m_saver.isSaved();
    Replace replace = Replace::AskOne;
    for (int i = 0; i < contacts.size(); ++i) {
        if (i % devicesBetweenBreaths == 0)
            keepAlive();
        // None before the first that is listed was, so what follows it tells of all.
        if (replace == Replace::AskOne && m_devices.rowOfMac(contacts.at(i).mac) >= 0 &&
            hasSeveralListed(contacts, i))
            replace = Replace::AskMany;
        addOrReplace(contacts.at(i), replace);
        if (m_closed)
            return; // the program was ended in the middle of a question
    }
    m_halfMade = false;
    emit listMade();
    saveAndAnnounce();
}

/// Whether more than one of these, from `first` on, finds its MAC taken, by the list or by one
/// before it.
bool DataMgr::hasSeveralListed(const QList<ContactInfo> &contacts, int first) const
{
    QSet<QString> seen;
    int listed = 0;
    for (int i = first; i < contacts.size() && listed < 2; ++i) {
        const QString &mac = contacts.at(i).mac;
        if (seen.contains(mac) || m_devices.rowOfMac(mac) >= 0)
            ++listed;
        seen.insert(mac);
    }
    return listed > 1;
}

/// False when the user kept the device that has this MAC already. An answer for all is kept in
/// `replace`.
bool DataMgr::addOrReplace(const ContactInfo &contact, Replace &replace)
{
    qCDebug(debugLog) << "insertContactNode.";
    if (m_devices.rowOfMac(contact.mac) < 0) {
        m_devices.append(contact);
        return true;
    }
    if (replace == Replace::AskOne || replace == Replace::AskMany) {
        const auto ask = replace == Replace::AskOne ? Modal::question : Modal::questionOfMany;
        const QString text = QLatin1String("MAC:") + contact.mac + tr(" has already exist") +
                             tr(",") + tr("do you want to replace it?");
        const Modal::Answer answer = ask(nullptr, tr("Replace action"), text);
        if (answer == Modal::Answer::YesToAll)
            replace = Replace::All;
        if (answer == Modal::Answer::NoToAll)
            replace = Replace::None;
        if (answer == Modal::Answer::No || m_closed)
            return false;
    }
    if (replace == Replace::None)
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
    if (putOff([=] { updateContact(contact); }))
        return;
    const int row = m_devices.rowOfNumber(contact.id);
    if (row >= 0)
        m_devices.replaceAt(row, contact);
    saveAndAnnounce();
}

void DataMgr::deleteContactAt(int row)
{
    if (m_breathing)
        return; // not put off: by then it may be another device's row
    if (row >= 0 && row < m_devices.size()) {
        m_devices.removeAt(row);
        saveAndAnnounce();
    } else {
        emit updateModel();
    }
}

bool DataMgr::deleteAllContacts()
{
    if (m_breathing)
        return false;
    if (m_devices.size() > 0 &&
        !m_saver.backUp(m_devices.snapshot().contacts(), ListSaver::Ask::Allowed))
        return false;
    if (m_closed)
        return false;
    m_devices.clear();
    saveAndAnnounce();
    return true;
}

/// In this order, so that the window shows what a message about the save speaks of.
void DataMgr::saveAndAnnounce()
{
    const bool saved = trySave(ListSaver::Ask::Allowed);
    emit updateModel();
    if (!saved) {
        emit listMade(); // for a view that waits for the end of the change
        tellSaveFailure();
    }
}

bool DataMgr::save()
{
    if (m_breathing)
        return false; // what is under way saves at its end
    const bool saved = trySave(ListSaver::Ask::Allowed);
    if (!saved)
        tellSaveFailure();
    return saved;
}

bool DataMgr::trySave(ListSaver::Ask ask)
{
    Q_ASSERT(QThread::currentThread() == thread());
    Q_ASSERT(!m_breathing);
    if (m_closed)
        return false;
    if (m_saver.isSaving())
        return true; // the one that waits for an answer takes this change with it
    bool saved = false;
    do
        saved = m_saver.save(ask);
    while (saved && !m_saver.isSaved());
    m_retryWanted = !saved;
    if (saved)
        m_failureTold = false;
    return saved;
}

void DataMgr::tellSaveFailure()
{
    if (m_closed || m_failureTold)
        return;
    m_failureTold = true;
    const QString text =
        m_saver.isUsable()
            ? tr("The device list can not be saved: %1. "
                 "It is kept in the window and will be saved with the next change.")
            : tr("The device list can not be saved: %1. "
                 "It is kept in the window, and a copy is written when the program ends.");
    Modal::message(nullptr, QMessageBox::Warning, tr("Save Error"), text.arg(lastErrorText()));
}

void DataMgr::saveList()
{
    if (QThread::currentThread() == thread()) {
        save();
    } else if (m_retryWanted.exchange(false)) {
        // Never written from here: the connection to the database belongs to the GUI thread. Nor
        // may a request from the network open boxes there.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_busy)
                    m_retryWanted = true; // the list is in the making, and saved when it is made
                else
                    trySave(ListSaver::Ask::Never);
            },
            Qt::QueuedConnection);
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

bool DataMgr::importFile(const QString &path)
{
    if (m_breathing)
        return false;
    const std::unique_ptr<ParseBase> parser = createParser();
    const QScopedValueRollback<bool> halfMade(m_halfMade, m_saver.isSaved());
    return parser->import(path, parser->encodingOf(path)) && !m_closed;
}

std::unique_ptr<ParseBase> DataMgr::createParser()
{
    return std::unique_ptr<ParseBase>(ParseFactory().createParser(*this, m_directory));
}

/// The rows of a usable store stay until the imported list is saved over them in one transaction:
/// whatever stops the program meanwhile leaves the old list. The import's work files, which it is
/// reading from just now, go with its end.
bool DataMgr::clearOld()
{
    if (!m_importFlag)
        return true;
    if (!m_saver.backUpAll(ListSaver::Ask::Allowed) || m_closed)
        return false;
    const bool usable = m_saver.isUsable();
    if (!usable && (!m_saver.putAside() || m_closed))
        return false; // the clean-up would remove what may be all that is left of a list
    if (usable) {
        removeProvisioningFiles();
    } else {
        cleanUp();
        if (!m_saver.open())
            return false;
    }
    m_devices.clear();
    emit updateModel();
    return true;
}

void DataMgr::cleanUp()
{
    QFile::remove(m_directory + databaseName);
    removeWorkFiles();
    removeProvisioningFiles();
}

void DataMgr::removeWorkFiles()
{
    createParser()->removeWorkFiles();
}

void DataMgr::keepAlive()
{
    breathe(QEventLoop::AllEvents);
}

/// What the user does meanwhile waits: the list is in the making. So does the end of the program;
/// see isBreathing().
void DataMgr::breathe(QEventLoop::ProcessEventsFlags flags)
{
    if (!m_busy || m_breathing || m_sinceBreath.elapsed() < millisecondsBetweenBreaths)
        return;
    const QScopedValueRollback<bool> breathing(m_breathing, true);
    QCoreApplication::processEvents(flags | QEventLoop::ExcludeUserInputEvents);
    m_sinceBreath.start();
}

void DataMgr::removeProvisioningFiles()
{
    const QFileInfo root(m_directory + provisioningRoot);
    if (root.isDir() && !root.isSymLink())
        QDir(root.filePath()).removeRecursively();
    else
        QFile::remove(root.filePath());
}

bool DataMgr::startHttpService()
{
    if (m_httpdService || m_closed)
        return m_httpdService && !m_httpdStarting;
    m_httpdService = new HttpdService(*this, m_directory);
    connect(m_httpdService, &HttpdService::httpdMsg, this, &DataMgr::httpdMsg,
            Qt::UniqueConnection);
    connect(m_httpdService, &HttpdService::httpdAddressChanged, &m_pnpServer,
            &PnPServer::setHttpdAddress);
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

bool DataMgr::isPnPServerRunning() const
{
    return m_pnpServer.isListening();
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
