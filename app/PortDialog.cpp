#include "app/PortDialog.h"

#include "widgets/Grid.h"
#include "widgets/Modal.h"
#include "widgets/OpenWhereClosed.h"

#include <QCheckBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr QSize dialogSize(500, 200);
constexpr int portWidth = 12 * gridPx;

} // namespace

PortDialog::PortDialog(QWidget *parent)
    : QDialog(parent)
    , m_useDefaultBox(new QCheckBox(tr("Use the Default Port 80:"), this))
    , m_portEdit(new QLineEdit(this))
    , m_okButton(new QPushButton(tr("OK"), this))
    , m_cancelButton(new QPushButton(tr("Cancel"), this))
{
    setObjectName(QStringLiteral("portDialog"));
    setWindowTitle(tr("Configure Httpd Port"));
    setWindowIcon(Modal::windowIcon());
    setFixedSize(dialogSize);
    openWhereClosed(*this);

    auto *const title = new QLabel(tr("Configure Httpd Port"), this);
    title->setObjectName(QStringLiteral("portTitleLabel"));
    title->setProperty("class", QStringLiteral("MainTitle"));

    m_useDefaultBox->setObjectName(QStringLiteral("useDefaultCheckBox"));
    m_useDefaultBox->setChecked(true);

    auto *const label = new QLabel(tr("Custom Port (5000-65535):"), this);
    label->setObjectName(QStringLiteral("portLabel"));
    label->setBuddy(m_portEdit);
    m_portEdit->setObjectName(QStringLiteral("portLineEdit"));
    m_portEdit->setAccessibleName(label->text());
    auto *const validator = new QIntValidator(lowestPort, highestPort, m_portEdit);
    // Rejects "5,000", which some languages would allow and the file does not.
    QLocale plainDigits = QLocale::c();
    plainDigits.setNumberOptions(QLocale::RejectGroupSeparator);
    validator->setLocale(plainDigits);
    m_portEdit->setValidator(validator);
    m_portEdit->setFixedWidth(portWidth);
    m_portEdit->setEnabled(false);

    auto *const note =
        new QLabel(tr("A running HTTPD keeps its port until it is closed and opened again."), this);
    note->setObjectName(QStringLiteral("portNoteLabel"));
    note->setWordWrap(true);
    setAccessibleDescription(note->text());

    m_okButton->setObjectName(QStringLiteral("portOkButton"));
    m_okButton->setDefault(true);
    m_cancelButton->setObjectName(QStringLiteral("portCancelButton"));

    auto *const portRow = new QHBoxLayout;
    portRow->setSpacing(gridPx);
    portRow->addWidget(label);
    portRow->addWidget(m_portEdit);
    portRow->addStretch();

    auto *const buttonRow = new QHBoxLayout;
    buttonRow->setSpacing(gridPx);
    buttonRow->addStretch();
    buttonRow->addWidget(m_okButton);
    buttonRow->addWidget(m_cancelButton);

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(2 * gridPx, 2 * gridPx, 2 * gridPx, 2 * gridPx);
    column->setSpacing(gridPx);
    column->addWidget(title);
    column->addWidget(m_useDefaultBox);
    column->addLayout(portRow);
    column->addWidget(note);
    column->addStretch();
    column->addLayout(buttonRow);
}

bool PortDialog::useDefault() const
{
    return m_useDefaultBox->isChecked();
}

QString PortDialog::portText() const
{
    return m_portEdit->text();
}

void PortDialog::setStored(bool useDefault, const QString &portText)
{
    m_stored = Choice{useDefault, portText};
    m_useDefaultBox->setChecked(useDefault);
    m_portEdit->setText(portText);
    setPortEnabled(!useDefault);
}

bool PortDialog::isAsStored() const
{
    return m_stored && m_stored->useDefault == useDefault() && m_stored->portText == portText();
}

void PortDialog::setPortEnabled(bool enabled)
{
    m_portEdit->setEnabled(enabled);
}

void PortDialog::showWrongPort()
{
    m_portEdit->setFocus();
    m_portEdit->selectAll();
}
