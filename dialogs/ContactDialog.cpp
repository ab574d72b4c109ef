#include "dialogs/ContactDialog.h"

#include "dialogs/ContactForm.h"
#include "dialogs/IpLine.h"
#include "model/DebugLog.h"

#include <QCloseEvent>
#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr int basicHeight = 360;
constexpr int advancedHeight = 800;
constexpr int basicRowCount = 9; // the others are advanced
// The default address has only the maker's three bytes; the user goes on with the fourth.
constexpr int firstOwnMacByte = 3;

} // namespace

ContactDialog::ContactDialog(QWidget *parent)
    : FormDialog(parent)
    , m_advanceButton(new QPushButton(tr("Show Advance Settings"), this))
{
    setObjectName(QStringLiteral("contactDialog"));
    m_advanceButton->setObjectName(QStringLiteral("showAdvanceButton"));
    connect(m_advanceButton, &QPushButton::clicked, this, &ContactDialog::showAdvanceBtnClicked);
    createRows();
    createLayout(m_advanceButton);
    loadContact(true, nullptr);
}

void ContactDialog::createRows()
{
    using Input = ContactInput;
    QVector<ContactRow> rows = {
        {tr("MAC"), QStringLiteral("macIpLine"), Input::Mac, &ContactInfo::mac},
        {tr("Product Model"), QStringLiteral("productComboBox"), Input::Product,
         &ContactInfo::product},
        {tr("Account"), QStringLiteral("firstAccountLineEdit"), Input::Text,
         &ContactInfo::first_account, startsGroup},
        {tr("SIP Server"), QStringLiteral("sipServerLineEdit"), Input::Text,
         &ContactInfo::sip_server},
        {tr("SIP User ID"), QStringLiteral("sipUserIdLineEdit"), Input::Text,
         &ContactInfo::sip_user_id},
        {tr("Authentication ID"), QStringLiteral("authIdLineEdit"), Input::Text,
         &ContactInfo::auth_id},
        {tr("Password"), QStringLiteral("passwordLineEdit"), Input::Password,
         &ContactInfo::password},
    };
    rows += ContactForm::telephonyRows();
    rows += QVector<ContactRow>{
        {tr("IP"), QStringLiteral("ipIpLine"), Input::Ip, &ContactInfo::ip, startsGroup},
        {tr("Subnet"), QStringLiteral("subnetIpLine"), Input::Ip, &ContactInfo::subnet},
        {tr("Gateway IP"), QStringLiteral("gatewayIpIpLine"), Input::Ip, &ContactInfo::gateway_ip},
        {tr("DNS Server 1"), QStringLiteral("dnsServer1IpLine"), Input::Ip,
         &ContactInfo::dns_server1},
        {tr("DNS Server 2"), QStringLiteral("dnsServer2IpLine"), Input::Ip,
         &ContactInfo::dns_server2},
    };
    rows += ContactForm::directoryRows();
    for (const ContactRow &row : qAsConst(rows))
        form().addRow(row, QStringLiteral("ContactDialog"));
    m_macLine = form().input<IpLine>("macIpLine");
}

void ContactDialog::loadContact(bool isAdd, ContactInfo *info)
{
    m_isAdd = isAdd;
    m_curInfo = info;
    setAdvancedVisible(false);
    scrollToTop();
    form().load(isAdd || !info ? ContactForm::defaultContact() : *info);

    // The focus avoids the address of an existing device: a stray key would make it another device.
    if (isAdd)
        m_macLine->focusPart(firstOwnMacByte);
    else
        form().input<QLineEdit>("firstAccountLineEdit")->setFocus(Qt::OtherFocusReason);
}

void ContactDialog::setAdvancedVisible(bool visible)
{
    form().setRowsVisibleFrom(basicRowCount, visible);
    form().setFixedHeight(visible ? advancedHeight : basicHeight);
    m_advanceButton->setText(visible ? tr("Hide Advance Settings") : tr("Show Advance Settings"));
}

void ContactDialog::showAdvanceBtnClicked()
{
    // Some desktops insert "&" into the text, for a mnemonic.
    const QString state = m_advanceButton->text().remove(QLatin1Char('&'));
    if (state == tr("Show Advance Settings"))
        setAdvancedVisible(true);
    else if (state == tr("Hide Advance Settings"))
        setAdvancedVisible(false);
}

void ContactDialog::doSaveAction()
{
    qCDebug(debugLog) << "doSaveAction.";
    if (!checkMac(*m_macLine))
        return;
    finish([this] {
        if (m_isAdd) {
            ContactInfo info;
            form().store(info);
            emit addSaveSucceed(info);
        } else if (m_curInfo) {
            form().store(*m_curInfo);
            emit editSaveSucceed(m_curInfo);
        }
    });
}

void ContactDialog::bringBackFor(ContactInfo *info)
{
    m_curInfo = info;
    bringBack();
}

void ContactDialog::closeEvent(QCloseEvent *event)
{
    qCDebug(debugLog) << "contact dialog close, m_isAdd = " << m_isAdd;
    qCDebug(debugLog) << "m_curInfo =" << m_curInfo;
    m_curInfo = nullptr;
    // The base class ends a modal run and emits the same signals as any other way to leave a
    // dialog.
    FormDialog::closeEvent(event);
    event->accept();
}

void ContactDialog::hideEvent(QHideEvent *event)
{
    // Escape hides the dialog without a close event. A spontaneous event comes from minimizing it.
    if (!event->spontaneous())
        m_curInfo = nullptr;
    FormDialog::hideEvent(event);
}
