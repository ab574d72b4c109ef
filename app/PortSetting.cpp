#include "app/PortSetting.h"

#include "app/NotWritten.h"
#include "app/PortDialog.h"
#include "net/HttpdPort.h"
#include "widgets/Modal.h"

#include <QCheckBox>
#include <QFile>
#include <QPushButton>

#include <utility>

PortSetting::PortSetting(QWidget &window)
    : QObject(&window)
    , m_window(window)
{
}

void PortSetting::open()
{
    if (!m_dialog)
        createDialog();
    m_dialog->show();
}

void PortSetting::createDialog()
{
    m_dialog = new PortDialog(&m_window);
    m_dialog->setWindowModality(Qt::WindowModal);
    const HttpdPort stored = readHttpdPort(httpdPortPath);
    // A press of OK must not keep a stored value that is neither choice.
    if (QFile::exists(httpdPortPath) && stored.policy != HttpdPort::Policy::NoPort)
        m_dialog->setStored(stored.policy == HttpdPort::Policy::Default, stored.portText);
    connect(m_dialog->useDefaultBox(), &QCheckBox::clicked, this, &PortSetting::setUseDefault);
    connect(m_dialog->okButton(), &QPushButton::clicked, this, &PortSetting::store);
    connect(m_dialog->cancelButton(), &QPushButton::clicked, this, &PortSetting::close);
    connect(m_dialog, &QDialog::rejected, this, &PortSetting::close);
}

void PortSetting::setUseDefault(bool useDefault)
{
    if (m_dialog)
        m_dialog->setPortEnabled(!useDefault);
}

void PortSetting::store()
{
    if (!m_dialog)
        return;
    if (m_dialog->isAsStored()) {
        close();
        return;
    }
    const int port = m_dialog->portText().toInt();
    const bool inRange = port >= PortDialog::lowestPort && port <= PortDialog::highestPort;
    if (!inRange && !m_dialog->useDefault()) {
        Modal::message(m_dialog, QMessageBox::Critical, tr("Port Error"),
                       tr("The port should between 5000 and 65535!"));
        // The dialog is gone if the program has quit meanwhile.
        if (m_dialog)
            m_dialog->showWrongPort();
        return;
    }
    const WriteResult stored =
        writeHttpdPort(httpdPortPath, m_dialog->useDefault(), m_dialog->portText());
    if (stored)
        close();
    else
        NotWritten::tell(m_dialog, tr("Port Error"), httpdPortPath, stored);
}

void PortSetting::close()
{
    PortDialog *const dialog = std::exchange(m_dialog, nullptr);
    if (!dialog)
        return;
    dialog->hide();
    dialog->deleteLater();
}
