#include "app/ServiceFlow.h"

#include "app/CommandBar.h"
#include "app/ReportBox.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

ServiceFlow::ServiceFlow(DataMgr &dataMgr, CommandBar &commandBar, ReportBox &reportBox,
                         QWidget &window)
    : QObject(&window)
    , m_dataMgr(dataMgr)
    , m_commandBar(commandBar)
    , m_reportBox(reportBox)
    , m_window(window)
{
    connect(&m_dataMgr, &DataMgr::requestReported, &m_reportBox, &ReportBox::addEnd);
}

void ServiceFlow::switchHttpd()
{
    if (m_dataMgr.isClosed())
        return;
    switch (m_dataMgr.httpState()) {
    case HttpdControl::State::Closed:
        startHttpd();
        break;
    case HttpdControl::State::Open:
        closeHttpd();
        break;
    case HttpdControl::State::Opening:
    case HttpdControl::State::Closing:
        break; // the user is already being asked
    }
}

void ServiceFlow::openHttpd()
{
    if (m_dataMgr.httpState() == HttpdControl::State::Closed)
        startHttpd();
}

void ServiceFlow::startHttpd()
{
    if (m_dataMgr.startHttpService())
        showServer();
    else
        closeHttpd();
}

void ServiceFlow::showServer()
{
    const QStringList addresses = m_dataMgr.serverAddresses();
    if (addresses.size() == 1) {
        m_reportBox.addLine(tr("ServerIP:%1").arg(addresses.first()));
    } else {
        for (int i = 0; i < addresses.size(); ++i)
            m_reportBox.addLine(tr("ServerIP%1:%2").arg(i + 1).arg(addresses.at(i)));
    }
    m_reportBox.addLine(tr("Port:%1").arg(m_dataMgr.serverPort()));
    m_reportBox.addLine(tr("HTTPD server is running."));
    m_reportBox.show();
    m_commandBar.showHttpOpen(true);
}

void ServiceFlow::closeHttpd()
{
    const bool stopped = m_dataMgr.stopHttpService();
    m_reportBox.clear();
    m_reportBox.hide();
    m_dataMgr.stopPnPServer();
    m_commandBar.showPnpEnabled(m_dataMgr.isPnPServerRunning());
    if (stopped)
        m_commandBar.showHttpOpen(false);
}

void ServiceFlow::switchPnp()
{
    if (m_dataMgr.isClosed())
        return;
    if (!m_commandBar.isPnpEnabled()) {
        enablePnp();
        return;
    }
    m_dataMgr.stopPnPServer();
    m_commandBar.showPnpEnabled(m_dataMgr.isPnPServerRunning());
}

void ServiceFlow::enablePnp()
{
    QString refusal;
    if (!m_commandBar.isHttpOpen())
        refusal = tr("PNP service requires HTTPD enabled, please open HTTPD service first!");
    else if (!m_dataMgr.startPnPServer())
        refusal = tr("PNP service requires 5060 port, please stop other occupied service and try "
                     "again!");
    if (refusal.isEmpty())
        m_commandBar.showPnpEnabled(true);
    else
        Modal::message(&m_window, QMessageBox::Warning, tr("Enable PNP Server"), refusal);
}

void ServiceFlow::addReport(const QString &message)
{
    m_reportBox.addReport(message);
}
