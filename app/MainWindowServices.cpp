// The window's services: HTTP and plug and play, opened and closed, and what they report.
#include "app/CommandBar.h"
#include "app/MainWindow.h"
#include "app/ReportBox.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

void MainWindow::selectHttpdService()
{
    if (m_state == State::Closed)
        return;
    switch (m_dataMgr.httpState()) {
    case HttpdControl::State::Closed:
        openHttpd();
        break;
    case HttpdControl::State::Open:
        closeHttpd();
        break;
    case HttpdControl::State::Opening:
    case HttpdControl::State::Closing:
        break; // the user is being asked already
    }
}

void MainWindow::openHttpd()
{
    // Once for all starts, or each report would appear once per start.
    connect(&m_dataMgr, &DataMgr::httpdMsg, this, &MainWindow::onHTTPDMsg, Qt::UniqueConnection);
    connect(&m_dataMgr, &DataMgr::requestReported, m_reportBox, &ReportBox::addEnd,
            Qt::UniqueConnection);
    if (!m_dataMgr.startHttpService()) {
        closeHttpd();
        return;
    }
    const QStringList addresses = m_dataMgr.serverAddresses();
    if (addresses.size() == 1) {
        m_reportBox->addLine(tr("ServerIP:%1").arg(addresses.first()));
    } else {
        for (int i = 0; i < addresses.size(); ++i)
            m_reportBox->addLine(tr("ServerIP%1:%2").arg(i + 1).arg(addresses.at(i)));
    }
    m_reportBox->addLine(tr("Port:%1").arg(m_dataMgr.serverPort()));
    m_reportBox->addLine(tr("HTTPD server is running."));
    m_reportBox->show();
    m_commandBar->showHttpOpen(true);
}

void MainWindow::closeHttpd()
{
    const bool stopped = m_dataMgr.stopHttpService();
    m_reportBox->clear();
    m_reportBox->hide();
    m_dataMgr.stopPnPServer();
    m_commandBar->showPnpEnabled(m_dataMgr.isPnPServerRunning());
    if (stopped)
        m_commandBar->showHttpOpen(false);
}

void MainWindow::selectPNPServer()
{
    if (m_state == State::Closed)
        return;
    if (!m_commandBar->isPnpEnabled()) {
        enablePnp();
        return;
    }
    m_dataMgr.stopPnPServer();
    m_commandBar->showPnpEnabled(m_dataMgr.isPnPServerRunning());
}

void MainWindow::enablePnp()
{
    QString refusal;
    if (!m_commandBar->isHttpOpen())
        refusal = tr("PNP service requires HTTPD enabled, please open HTTPD service first!");
    else if (!m_dataMgr.startPnPServer())
        refusal = tr("PNP service requires 5060 port, please stop other occupied service and try "
                     "again!");
    if (refusal.isEmpty())
        m_commandBar->showPnpEnabled(true);
    else
        Modal::message(this, QMessageBox::Warning, tr("Enable PNP Server"), refusal);
}

void MainWindow::onHTTPDMsg(const QString &message)
{
    m_reportBox->addReport(message);
}
