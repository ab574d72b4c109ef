#include "dialogs/ContactsDialog.h"

#include "dialogs/BatchPreview.h"
#include "dialogs/ContactForm.h"
#include "dialogs/DeviceBatch.h"
#include "dialogs/IpLine.h"
#include "dialogs/IpPart.h"
#include "model/DebugLog.h"

#include <QLineEdit>
#include <QPushButton>

#include <utility>

namespace {

constexpr int formHeight = 780;
/// From this row on, the form is styled like that of a single device.
constexpr int firstSingleStyleRow = 12;

} // namespace

ContactsDialog::ContactsDialog(QWidget *parent)
    : FormDialog(parent)
{
    setObjectName(QStringLiteral("contactsDialog"));
    createRows();
    form().setFixedHeight(formHeight);
    createPreview();
    createLayout(nullptr, m_preview);
    reset();
}

void ContactsDialog::createPreview()
{
    m_preview = new BatchPreview(this);
    m_previewTimer.setSingleShot(true);
    connect(&m_previewTimer, &QTimer::timeout, this, [this] {
        if (isVisible())
            updatePreview();
    });
    for (const char *const name : {"productCountLineEdit", "macStepLineEdit", "userIdStepLineEdit",
                                   "firstSipUserIdLineEdit"})
        connect(form().input<QLineEdit>(name), &QLineEdit::textChanged, this,
                &ContactsDialog::lookAhead);
    for (const IpPart *const part : m_macLine->parts())
        connect(part, &QLineEdit::textChanged, this, &ContactsDialog::lookAhead);
}

void ContactsDialog::setLookup(std::function<bool(const QString &mac)> isListed)
{
    m_isListed = std::move(isListed);
}

void ContactsDialog::lookAhead()
{
    m_previewTimer.start();
}

void ContactsDialog::updatePreview()
{
    const auto inNoList = [](const QString &) { return false; };
    m_preview->showOutlook(outlookOf(texts(), m_isListed ? m_isListed : inNoList));
    // A screen reader reads the preview out at the "Save" button.
    findChild<QPushButton *>(QStringLiteral("saveButton"))
        ->setAccessibleDescription(m_preview->text());
}

void ContactsDialog::createRows()
{
    using Input = ContactInput;
    const QString macStep =
        tr("How far apart the MAC addresses are. With 2, 02:00:A7:00:00:08 is followed by "
           "02:00:A7:00:00:0A.");
    const QString userIdStep =
        tr("How far apart the user IDs are. With 1, 1001 is followed by 1002.");
    const QString mirrored =
        tr("Follows the first SIP user ID, whatever is typed here: each device gets its own user "
           "ID here as well.");
    QVector<ContactRow> rows = {
        {tr("Product Count"), QStringLiteral("productCountLineEdit"), Input::Text, nullptr},
        {tr("Law of increasing MAC"), QStringLiteral("macStepLineEdit"), Input::Text, nullptr,
         !startsGroup, macStep},
        {tr("Law of increasing User ID"), QStringLiteral("userIdStepLineEdit"), Input::Text,
         nullptr, !startsGroup, userIdStep},
        {tr("First MAC"), QStringLiteral("firstMacIpLine"), Input::Mac, &ContactInfo::mac,
         startsGroup},
        {tr("Product Model"), QStringLiteral("productComboBox"), Input::Product,
         &ContactInfo::product},
        {tr("SIP Server"), QStringLiteral("sipServerLineEdit"), Input::Text,
         &ContactInfo::sip_server, startsGroup},
        {tr("First SIP User ID"), QStringLiteral("firstSipUserIdLineEdit"), Input::Text,
         &ContactInfo::sip_user_id},
        {tr("First Authentication ID"), QStringLiteral("firstAuthIdLineEdit"), Input::Text,
         &ContactInfo::auth_id, !startsGroup, mirrored},
        {tr("First Account"), QStringLiteral("firstAccountLineEdit"), Input::Text,
         &ContactInfo::first_account, !startsGroup, mirrored},
        {tr("Password"), QStringLiteral("passwordLineEdit"), Input::Password,
         &ContactInfo::password},
    };
    rows += ContactForm::telephonyRows();
    rows += ContactForm::directoryRows();
    for (const ContactRow &row : qAsConst(rows)) {
        const bool singleStyle = form().rowCount() >= firstSingleStyleRow;
        form().addRow(row, singleStyle ? QStringLiteral("ContactDialog")
                                       : QStringLiteral("ContactsDialog"));
    }
    m_countEdit = form().input<QLineEdit>("productCountLineEdit");
    m_macLine = form().input<IpLine>("firstMacIpLine");
    connect(form().input<QLineEdit>("firstSipUserIdLineEdit"), &QLineEdit::textChanged, this,
            &ContactsDialog::slotUserIdChanged);
}

void ContactsDialog::reset()
{
    form().load(ContactForm::defaultContact());
    m_countEdit->setText(QStringLiteral("2"));
    form().input<QLineEdit>("macStepLineEdit")->setText(QStringLiteral("2"));
    form().input<QLineEdit>("userIdStepLineEdit")->setText(QStringLiteral("1"));
    updatePreview();
    scrollToTop();
    m_countEdit->setFocus(Qt::OtherFocusReason);
    m_countEdit->selectAll();
}

void ContactsDialog::slotUserIdChanged(const QString &text)
{
    form().input<QLineEdit>("firstAccountLineEdit")->setText(text);
    form().input<QLineEdit>("firstAuthIdLineEdit")->setText(text);
}

bool ContactsDialog::checkCount(const DeviceBatch &batch)
{
    if (deviceCount(batch) <= maxBatchDevices)
        return true;
    m_countEdit->setFocus(Qt::OtherFocusReason);
    m_countEdit->selectAll();
    complain(*m_countEdit,
             tr("At most %1 devices can be created in one step.").arg(maxBatchDevices));
    return false;
}

BatchTexts ContactsDialog::texts() const
{
    const auto text = [this](const char *name) { return form().input<QLineEdit>(name)->text(); };
    const QString mac = m_macLine->text();
    return {m_countEdit->text(), text("macStepLineEdit"), text("userIdStepLineEdit"),
            isWholeMac(mac) ? mac : QString(), text("firstSipUserIdLineEdit")};
}

DeviceBatch ContactsDialog::batch() const
{
    DeviceBatch batch = readBatch(texts());
    form().store(batch.common);
    return batch;
}

void ContactsDialog::doSaveAction()
{
    qCDebug(debugLog) << "doSaveAction.";
    if (!checkMac(*m_macLine))
        return;
    const DeviceBatch wanted = batch();
    if (!checkCount(wanted))
        return;
    finish([&] { emit addSaveSucceed(makeDevices(wanted)); });
}
