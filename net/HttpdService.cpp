#include "net/HttpdService.h"

#include "model/DebugLog.h"
#include "net/HttpdPort.h"
#include "net/HttpdServer.h"
#include "net/NetCardSelectDialog.h"
#include "widgets/Modal.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <utility>

namespace {
constexpr quint16 defaultPort = 80;
}

HttpdService::HttpdService(ProvisioningSource &source, const QString &baseDir, QWidget *parent)
    : QDialog(parent)
    , m_cardDialog(new NetCardSelectDialog)
    , m_source(source)
    , m_baseDir(baseDir)
    , m_interfaces(systemNetInterfaces)
{
}

HttpdService::~HttpdService()
{
    stop();
    // Deleted here, as the event loop may never run again. Its last reports are dropped, as the
    // owner may be half destroyed.
    if (m_stoppedServer)
        m_stoppedServer->disconnect(this);
    delete m_stoppedServer;
    delete m_cardDialog;
}

bool HttpdService::start()
{
    if (m_starting || m_server)
        return false;
    const QScopedValueRollback<bool> starting(m_starting, true);
    if (runStart())
        return true;
    stop();
    return false;
}

void HttpdService::stop()
{
    close();
    if (m_starting)
        m_cardDialog->reject();
    if (m_box)
        m_box->reject();
    if (m_server) {
        m_server->shutDown();
        m_server->deleteLater();
        m_stoppedServer = m_server;
        m_server = nullptr;
    }
    m_ipList.clear();
}

void HttpdService::clearDocuments()
{
    if (m_server)
        m_server->clearDocuments();
}

bool HttpdService::hasDocumentsToClear() const
{
    return m_server && m_server->hasDocumentsToClear();
}

quint16 HttpdService::port() const
{
    return m_server ? m_server->serverPort() : 0;
}

void HttpdService::setInterfaceSource(InterfaceSource source)
{
    m_interfaces = std::move(source);
}

bool HttpdService::runStart()
{
    if (!m_label) {
        m_label = new QLabel(this);
        m_okButton = new QPushButton(tr("OK"), this);
    }
    m_server = new HttpdServer(m_source, m_baseDir);
    connect(m_server, &HttpdServer::requestServer, this, &HttpdService::httpdMsg);
    connect(m_server, &HttpdServer::requestEnded, this, &HttpdService::requestEnded);
    m_okButton->setAutoDefault(false);

    if (!chooseCard() || !openPort())
        return false;

    const QString address = m_ipList.first();
    const QString portText = QString::number(port());
    m_label->setText(tr("The server is running on") + QLatin1String("\n\n") +
                     tr("IP: %1").arg(address) + QLatin1Char('\n') + tr("port: %1").arg(portText) +
                     QLatin1String("\n\n"));
    emit httpdAddressChanged(address, portText);
    fillDialog();
    return m_server != nullptr;
}

bool HttpdService::chooseCard()
{
    const QList<NetInterface> interfaces = m_interfaces();
    if (interfaces.isEmpty()) {
        showBox(QMessageBox::Critical, tr("Unable to start the server: NIC device not found."));
        return false;
    }

    m_cardDialog->setNetCards(netCards(interfaces));
    const int result = Modal::run(*m_cardDialog);
    m_cardDialog->hide(); // it is still open when the program quits
    if (result == Rejected || !m_server) {
        qCDebug(debugLog) << "User abort select network card.";
        return false;
    }

    m_ipList = m_cardDialog->selectedIpList();
    if (m_ipList.isEmpty()) {
        showBox(QMessageBox::Critical,
                tr("Unable to start the server: Not avaliable physical NIC!"));
        return false;
    }
    qCDebug(debugLog) << "Final choose interface name: " << interfaces.last().humanReadableName
                      << "ipList = " << m_ipList;
    return true;
}

/// False when no port could be opened, or the service was stopped meanwhile.
bool HttpdService::openPort()
{
    const HttpdPort setting = readHttpdPort(httpdPortPath);
    switch (setting.policy) {
    case HttpdPort::Policy::Default:
        return listenOrRandom(
            defaultPort,
            tr("Open the default port 80 failed, please go to 'Options -> Configuration Httpd "
               "Port' to configure or use a random port."));
    case HttpdPort::Policy::Custom:
        return listenOrRandom(
            static_cast<quint16>(setting.port),
            tr("Open the custom port failed, the Httpd server will use a random port"));
    case HttpdPort::Policy::NoPort:
        break;
    }
    return true;
}

bool HttpdService::listenOrRandom(quint16 port, const QString &warning)
{
    if (m_server->listen(QHostAddress::AnyIPv4, port))
        return true;
    if (!showBox(QMessageBox::Warning, warning))
        return false;
    if (m_server->listen(QHostAddress::AnyIPv4, 0))
        return true;
    showBox(QMessageBox::Critical,
            tr("Unable to start the server: %1.").arg(m_server->errorString()));
    return false;
}

/// False when the box was not answered, because the service was stopped or the program quits.
bool HttpdService::showBox(QMessageBox::Icon icon, const QString &text)
{
    QMessageBox box(icon, tr("Httpd Server"), text, QMessageBox::Ok, this);
    box.setWindowIcon(Modal::windowIcon());
    box.setTextFormat(Qt::PlainText);
    m_box = &box;
    Modal::run(box);
    // An answered box is hidden; one whose event loop was ended from outside is not.
    return m_server && !box.isVisible();
}

void HttpdService::fillDialog()
{
    setWindowTitle(tr("Httpd Server"));
    // Without a parent the dialog is a window anyway; with one, the flag has to say so.
    const Qt::WindowFlags type = parentWidget() ? Qt::Dialog : Qt::Widget;
    setWindowFlags(type | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    if (layout())
        return;
    connect(m_okButton, &QPushButton::clicked, this, &QDialog::hide);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_okButton);
    buttons->addStretch();
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_label);
    column->addLayout(buttons);
}
