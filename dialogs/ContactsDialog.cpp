#include "dialogs/ContactsDialog.h"

#include "dialogs/ContactForm.h"
#include "dialogs/DeviceBatch.h"
#include "dialogs/IpLine.h"
#include "model/DebugLog.h"
#include "widgets/Modal.h"
#include "widgets/ScrollArea.h"
#include "widgets/ToolTipWidget.h"

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
constexpr int formHeight = 780;
constexpr int macByteCount = 6;
/// From this row on the form looks like that of a single device.
constexpr int firstSingleStyleRow = 12;

int number(const QLineEdit *edit)
{
    return edit->text().toInt();
}

} // namespace

ContactsDialog::ContactsDialog(QWidget *parent)
    : QDialog(parent)
    , m_form(new ContactForm)
    , m_scrollArea(new ScrollArea(this))
    , m_toolTip(new ToolTipWidget(this))
{
    setWindowIcon(Modal::windowIcon());
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    createRows();
    createLayout();
    reset();
}

void ContactsDialog::createRows()
{
    using Input = ContactInput;
    const QVector<ContactRow> rows = {
        {tr("Product Count"), QStringLiteral("productCountLineEdit"), Input::Text, nullptr},
        {tr("Law of increasing MAC"), QStringLiteral("macStepLineEdit"), Input::Text, nullptr},
        {tr("Law of increasing User ID"), QStringLiteral("userIdStepLineEdit"), Input::Text,
         nullptr},
        {tr("First MAC"), QStringLiteral("firstMacIpLine"), Input::Mac, &ContactInfo::mac},
        {tr("Product Model"), QStringLiteral("productComboBox"), Input::Product,
         &ContactInfo::product},
        {tr("SIP Server"), QStringLiteral("sipServerLineEdit"), Input::Text,
         &ContactInfo::sip_server},
        {tr("First SIP User ID"), QStringLiteral("firstSipUserIdLineEdit"), Input::Text,
         &ContactInfo::sip_user_id},
        {tr("First Authentication ID"), QStringLiteral("firstAuthIdLineEdit"), Input::Text,
         &ContactInfo::auth_id},
        {tr("First Account"), QStringLiteral("firstAccountLineEdit"), Input::Text,
         &ContactInfo::first_account},
        {tr("Password"), QStringLiteral("passwordLineEdit"), Input::Password,
         &ContactInfo::password},
        {tr("Speech Coding 1"), QStringLiteral("speechCoding1ComboBox"), Input::Codec,
         &ContactInfo::speech_coding1},
        {tr("Speech Coding 2"), QStringLiteral("speechCoding2ComboBox"), Input::Codec,
         &ContactInfo::speech_coding2},
        {tr("Username"), QStringLiteral("usernameLineEdit"), Input::Text, &ContactInfo::username},
        {tr("Language"), QStringLiteral("languageComboBox"), Input::Language,
         &ContactInfo::language},
        {tr("Random Port"), QStringLiteral("randomPortComboBox"), Input::YesNo,
         &ContactInfo::random_port},
        {tr("Keep-Alive"), QStringLiteral("keepAliveComboBox"), Input::YesNo,
         &ContactInfo::keep_alive},
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
    for (const ContactRow &row : rows) {
        const bool singleStyle = m_form->rowCount() >= firstSingleStyleRow;
        m_form->addRow(row, singleStyle ? QStringLiteral("ContactDialog")
                                        : QStringLiteral("ContactsDialog"));
    }
    m_countEdit = m_form->input<QLineEdit>("productCountLineEdit");
    m_macLine = m_form->input<IpLine>("firstMacIpLine");
    connect(m_form->input<QLineEdit>("firstSipUserIdLineEdit"), &QLineEdit::textChanged, this,
            &ContactsDialog::slotUserIdChanged);
}

void ContactsDialog::createLayout()
{
    m_form->setFixedHeight(formHeight);
    m_scrollArea->setObjectName(QStringLiteral("contactsScrollArea"));
    m_scrollArea->setFixedSize(scrollAreaWidth, scrollAreaHeight);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setWidget(m_form);

    auto *saveButton = new QPushButton(tr("Save"), this);
    auto *cancelButton = new QPushButton(tr("Cancel"), this);
    saveButton->setObjectName(QStringLiteral("saveButton"));
    cancelButton->setObjectName(QStringLiteral("cancelButton"));
    saveButton->setDefault(true);
    connect(saveButton, &QPushButton::clicked, this, &ContactsDialog::doSaveAction);
    connect(cancelButton, &QPushButton::clicked, this, &ContactsDialog::close);

    QWidget::setTabOrder(m_form->input<QLineEdit>("proxyServerLineEdit"), saveButton);
    QWidget::setTabOrder(saveButton, cancelButton);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(spacing);
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

void ContactsDialog::reset()
{
    m_form->load(ContactForm::defaultContact());
    m_countEdit->setText(QStringLiteral("2"));
    m_form->input<QLineEdit>("macStepLineEdit")->setText(QStringLiteral("2"));
    m_form->input<QLineEdit>("userIdStepLineEdit")->setText(QStringLiteral("1"));
    m_scrollArea->verticalScrollBar()->setValue(0);
    m_countEdit->setFocus(Qt::OtherFocusReason);
    m_countEdit->selectAll();
}

void ContactsDialog::slotUserIdChanged(const QString &text)
{
    m_form->input<QLineEdit>("firstAccountLineEdit")->setText(text);
    m_form->input<QLineEdit>("firstAuthIdLineEdit")->setText(text);
}

bool ContactsDialog::checkMac()
{
    const QStringList groups = m_macLine->text().split(QLatin1Char(':'), Qt::SkipEmptyParts);
    if (groups.size() == macByteCount)
        return true;
    m_scrollArea->ensureWidgetVisible(m_macLine);
    m_macLine->focusFirstEmptyPart();
    m_toolTip->showMessage(tr("Please fulfill correct MAC address!"), m_macLine);
    return false;
}

bool ContactsDialog::checkCount(const DeviceBatch &batch)
{
    if (deviceCount(batch) <= maxBatchDevices)
        return true;
    m_scrollArea->ensureWidgetVisible(m_countEdit);
    m_countEdit->setFocus(Qt::OtherFocusReason);
    m_countEdit->selectAll();
    m_toolTip->showMessage(
        tr("At most %1 devices can be created in one step.").arg(maxBatchDevices), m_countEdit);
    return false;
}

DeviceBatch ContactsDialog::batch() const
{
    DeviceBatch batch;
    batch.count = number(m_countEdit);
    batch.macStep = number(m_form->input<QLineEdit>("macStepLineEdit"));
    batch.userIdStep = number(m_form->input<QLineEdit>("userIdStepLineEdit"));
    batch.firstMac = m_macLine->text().remove(QLatin1Char(':'));
    batch.firstUserId = number(m_form->input<QLineEdit>("firstSipUserIdLineEdit"));
    m_form->store(batch.common);
    return batch;
}

void ContactsDialog::doSaveAction()
{
    qCDebug(debugLog) << "doSaveAction.";
    if (!checkMac())
        return;
    const DeviceBatch wanted = batch();
    if (!checkCount(wanted))
        return;
    emit addSaveSucceed(makeDevices(wanted));
    close();
}
