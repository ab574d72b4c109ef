#include "dialogs/ContactDialog.h"

#include "dialogs/ContactForm.h"
#include "dialogs/IpLine.h"
#include "model/DebugLog.h"
#include "widgets/Modal.h"
#include "widgets/ScrollArea.h"
#include "widgets/ToolTipWidget.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {

constexpr int margin = 10;
constexpr int spacing = 10;
constexpr int scrollAreaWidth = 609;
constexpr int scrollAreaHeight = 371;
constexpr int basicHeight = 360;
constexpr int advancedHeight = 800;
constexpr int basicRowCount = 9;
constexpr int macByteCount = 6;
// The default address ends with the maker's three bytes; the user goes on with the fourth.
constexpr int firstOwnMacByte = 3;

} // namespace

ContactDialog::ContactDialog(QWidget *parent)
    : QDialog(parent)
    , m_form(new ContactForm)
    , m_scrollArea(new ScrollArea(this))
    , m_toolTip(new ToolTipWidget(this))
    , m_advanceButton(new QPushButton(tr("Show Advance Settings"), this))
{
    setWindowIcon(Modal::windowIcon());
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    createRows();
    createLayout();
    loadContact(true, nullptr);
}

void ContactDialog::createRows()
{
    using Input = ContactInput;
    const QVector<ContactRow> rows = {
        {tr("MAC"), QStringLiteral("macIpLine"), Input::Mac, &ContactInfo::mac},
        {tr("Product Model"), QStringLiteral("productComboBox"), Input::Product,
         &ContactInfo::product},
        {tr("Account"), QStringLiteral("firstAccountLineEdit"), Input::Text,
         &ContactInfo::first_account},
        {tr("SIP Server"), QStringLiteral("sipServerLineEdit"), Input::Text,
         &ContactInfo::sip_server},
        {tr("SIP User ID"), QStringLiteral("sipUserIdLineEdit"), Input::Text,
         &ContactInfo::sip_user_id},
        {tr("Authentication ID"), QStringLiteral("authIdLineEdit"), Input::Text,
         &ContactInfo::auth_id},
        {tr("Password"), QStringLiteral("passwordLineEdit"), Input::Password,
         &ContactInfo::password},
        {tr("Speech Coding 1"), QStringLiteral("speechCoding1ComboBox"), Input::Codec,
         &ContactInfo::speech_coding1},
        {tr("Speech Coding 2"), QStringLiteral("speechCoding2ComboBox"), Input::Codec,
         &ContactInfo::speech_coding2},
        // From here on the rows are advanced.
        {tr("Username"), QStringLiteral("usernameLineEdit"), Input::Text, &ContactInfo::username},
        {tr("Language"), QStringLiteral("languageComboBox"), Input::Language,
         &ContactInfo::language},
        {tr("Random Port"), QStringLiteral("randomPortComboBox"), Input::YesNo,
         &ContactInfo::random_port},
        {tr("Keep-Alive"), QStringLiteral("keepAliveComboBox"), Input::YesNo,
         &ContactInfo::keep_alive},
        {tr("IP"), QStringLiteral("ipIpLine"), Input::Ip, &ContactInfo::ip},
        {tr("Subnet"), QStringLiteral("subnetIpLine"), Input::Ip, &ContactInfo::subnet},
        {tr("Gateway IP"), QStringLiteral("gatewayIpIpLine"), Input::Ip, &ContactInfo::gateway_ip},
        {tr("DNS Server 1"), QStringLiteral("dnsServer1IpLine"), Input::Ip,
         &ContactInfo::dns_server1},
        {tr("DNS Server 2"), QStringLiteral("dnsServer2IpLine"), Input::Ip,
         &ContactInfo::dns_server2},
        {tr("Enterprise Phonebook Path"), QStringLiteral("phonebookPathLineEdit"), Input::Text,
         &ContactInfo::phonebook_path},
        {tr("Dial Plan"), QStringLiteral("dialPlanLineEdit"), Input::Text, &ContactInfo::dial_plan},
        {tr("City"), QStringLiteral("cityLineEdit"), Input::Text, &ContactInfo::city},
        {tr("Company"), QStringLiteral("companyLineEdit"), Input::Text, &ContactInfo::company},
        {tr("Department"), QStringLiteral("departmentLineEdit"), Input::Text,
         &ContactInfo::department},
        {tr("Proxy Server"), QStringLiteral("proxyServerLineEdit"), Input::Text,
         &ContactInfo::proxy_server},
    };
    for (const ContactRow &row : rows)
        m_form->addRow(row, QStringLiteral("ContactDialog"));
    m_macLine = m_form->input<IpLine>("macIpLine");
}

void ContactDialog::createLayout()
{
    m_scrollArea->setObjectName(QStringLiteral("contactScrollArea"));
    m_scrollArea->setFixedSize(scrollAreaWidth, scrollAreaHeight);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setWidget(m_form);

    auto *saveButton = new QPushButton(tr("Save"), this);
    auto *cancelButton = new QPushButton(tr("Cancel"), this);
    m_advanceButton->setObjectName(QStringLiteral("showAdvanceButton"));
    // The one button that Return presses, and that looks so, is "Save".
    m_advanceButton->setAutoDefault(false);
    saveButton->setObjectName(QStringLiteral("saveButton"));
    cancelButton->setObjectName(QStringLiteral("cancelButton"));
    saveButton->setDefault(true);
    connect(m_advanceButton, &QPushButton::clicked, this, &ContactDialog::showAdvanceBtnClicked);
    connect(saveButton, &QPushButton::clicked, this, &ContactDialog::doSaveAction);
    connect(cancelButton, &QPushButton::clicked, this, &ContactDialog::close);

    QWidget::setTabOrder(m_form->input<QLineEdit>("proxyServerLineEdit"), m_advanceButton);
    QWidget::setTabOrder(m_advanceButton, saveButton);
    QWidget::setTabOrder(saveButton, cancelButton);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(spacing);
    buttons->addWidget(m_advanceButton);
    buttons->addStretch();
    buttons->addWidget(saveButton);
    buttons->addWidget(cancelButton);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(spacing);
    layout->addWidget(m_scrollArea);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->activate();
}

void ContactDialog::loadContact(bool isAdd, ContactInfo *info)
{
    m_isAdd = isAdd;
    m_curInfo = info;
    setAdvancedVisible(false);
    m_scrollArea->verticalScrollBar()->setValue(0);
    m_form->load(isAdd || !info ? ContactForm::defaultContact() : *info);

    // An existing device keeps its address: a stray key there would make it another device.
    if (isAdd)
        m_macLine->focusPart(firstOwnMacByte);
    else
        m_form->input<QLineEdit>("firstAccountLineEdit")->setFocus(Qt::OtherFocusReason);
}

void ContactDialog::setAdvancedVisible(bool visible)
{
    m_form->setRowsVisibleFrom(basicRowCount, visible);
    m_form->setFixedHeight(visible ? advancedHeight : basicHeight);
    m_advanceButton->setText(visible ? tr("Hide Advance Settings") : tr("Show Advance Settings"));
}

void ContactDialog::showAdvanceBtnClicked()
{
    // Some desktops mark a letter of the text with "&".
    const QString state = m_advanceButton->text().remove(QLatin1Char('&'));
    if (state == tr("Show Advance Settings"))
        setAdvancedVisible(true);
    else if (state == tr("Hide Advance Settings"))
        setAdvancedVisible(false);
}

bool ContactDialog::checkMac()
{
    const QStringList groups = m_macLine->text().split(QLatin1Char(':'), Qt::SkipEmptyParts);
    if (groups.size() == macByteCount)
        return true;
    m_scrollArea->ensureWidgetVisible(m_macLine);
    m_macLine->focusFirstEmptyPart();
    m_toolTip->showMessage(tr("Please fulfill correct MAC address!"), m_macLine);
    return false;
}

void ContactDialog::doSaveAction()
{
    qCDebug(debugLog) << "doSaveAction.";
    if (!checkMac())
        return;
    if (m_isAdd) {
        ContactInfo info;
        m_form->store(info);
        emit addSaveSucceed(info);
    } else if (m_curInfo) {
        m_form->store(*m_curInfo);
        emit editSaveSucceed(m_curInfo);
    }
    close();
}

void ContactDialog::closeEvent(QCloseEvent *event)
{
    qCDebug(debugLog) << "contact dialog close, m_isAdd = " << m_isAdd;
    qCDebug(debugLog) << "m_curInfo =" << m_curInfo;
    m_curInfo = nullptr;
    // Ends a modal run and reports the end like every other way of leaving a dialog.
    QDialog::closeEvent(event);
    event->accept();
}

void ContactDialog::hideEvent(QHideEvent *event)
{
    // Escape hides the dialog without a close event. Minimizing is no end.
    if (!event->spontaneous())
        m_curInfo = nullptr;
    QDialog::hideEvent(event);
}
