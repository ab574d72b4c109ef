#include "dialogs/ContactForm.h"

#include "dialogs/IpLine.h"
#include "model/ContactFields.h"
#include "model/ValueTables.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include <limits>

namespace {

constexpr int labelWidth = 180;
constexpr int labelHeight = 30;
constexpr int labelGap = 12;
constexpr int rowSpacing = 2;
/// One pixel of line and one of space on each side; the form has no height for more.
constexpr int groupLineHeight = 3;
constexpr int rightMargin = 16;

QStringList choices(ContactInput kind)
{
    switch (kind) {
    case ContactInput::Product:
        return productModels();
    case ContactInput::Codec:
        return speechCodecs();
    case ContactInput::Language: {
        QStringList names;
        for (const LanguageEntry &entry : languageTable())
            names.append(QCoreApplication::translate("LanguageTable", entry.name));
        return names;
    }
    case ContactInput::YesNo:
        return {ContactForm::tr("Yes"), ContactForm::tr("No")};
    default:
        return {};
    }
}

/// Selects the item at `position`. A value that is not on offer (position -1) becomes an additional
/// last item, so that the user sees it and keeps it until choosing another. The additional item of
/// the previous record is removed.
void select(QComboBox &box, ContactInput kind, int position, const QString &value)
{
    const int offered = choices(kind).size();
    while (box.count() > offered)
        box.removeItem(box.count() - 1);
    if (position < 0 && !value.isEmpty()) {
        position = box.count();
        box.addItem(value);
    }
    box.setCurrentIndex(position);
}

} // namespace

ContactForm::ContactForm(QWidget *parent)
    : QWidget(parent)
    , m_grid(new QGridLayout(this))
{
    m_grid->setContentsMargins(0, 0, rightMargin, 0);
    m_grid->setHorizontalSpacing(labelGap);
    m_grid->setVerticalSpacing(rowSpacing);
    m_grid->setColumnStretch(1, 1);
}

QVector<ContactRow> ContactForm::telephonyRows()
{
    using Input = ContactInput;
    return {
        {tr("Speech Coding 1"), QStringLiteral("speechCoding1ComboBox"), Input::Codec,
         &ContactInfo::speech_coding1, startsGroup},
        {tr("Speech Coding 2"), QStringLiteral("speechCoding2ComboBox"), Input::Codec,
         &ContactInfo::speech_coding2},
        {tr("Username"), QStringLiteral("usernameLineEdit"), Input::Text, &ContactInfo::username,
         startsGroup},
        {tr("Language"), QStringLiteral("languageComboBox"), Input::Language,
         &ContactInfo::language},
        {tr("Random Port"), QStringLiteral("randomPortComboBox"), Input::YesNo,
         &ContactInfo::random_port},
        {tr("Keep-Alive"), QStringLiteral("keepAliveComboBox"), Input::YesNo,
         &ContactInfo::keep_alive},
    };
}

QVector<ContactRow> ContactForm::directoryRows()
{
    using Input = ContactInput;
    return {
        {tr("Enterprise Phonebook Path"), QStringLiteral("phonebookPathLineEdit"), Input::Text,
         &ContactInfo::phonebook_path, startsGroup},
        {tr("Dial Plan"), QStringLiteral("dialPlanLineEdit"), Input::Text, &ContactInfo::dial_plan},
        {tr("City"), QStringLiteral("cityLineEdit"), Input::Text, &ContactInfo::city, startsGroup},
        {tr("Company"), QStringLiteral("companyLineEdit"), Input::Text, &ContactInfo::company},
        {tr("Department"), QStringLiteral("departmentLineEdit"), Input::Text,
         &ContactInfo::department},
        {tr("Proxy Server"), QStringLiteral("proxyServerLineEdit"), Input::Text,
         &ContactInfo::proxy_server},
    };
}

QWidget *ContactForm::addRow(const ContactRow &row, const QString &styleClass)
{
    auto *label = new QLabel(row.label, this);
    label->setProperty("class", QString(styleClass + QLatin1String("ItemLabel")));
    label->setFixedSize(labelWidth, labelHeight);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    QWidget *input = createInput(row.input);
    input->setObjectName(row.name);
    input->setProperty("class", QString(styleClass + QLatin1String("ItemEdit")));
    if (auto *line = qobject_cast<IpLine *>(input))
        line->setLabelText(row.label);
    else
        input->setAccessibleName(row.label);
    label->setBuddy(input);
    for (QWidget *const widget : {static_cast<QWidget *>(label), input}) {
        // A tool tip wraps its text only if that is rich text.
        widget->setToolTip(row.toolTip.isEmpty() ? QString()
                                                 : QStringLiteral("<p>%1</p>").arg(row.toolTip));
        widget->setAccessibleDescription(row.toolTip);
    }

    QWidget *groupLine = row.startsGroup ? createGroupLine() : nullptr;
    const int position = m_grid->rowCount();
    m_grid->addWidget(label, position, 0);
    m_grid->addWidget(input, position, 1);
    m_rows.append({row.input, row.field, label, input, groupLine, QString(), -1});
    return input;
}

QWidget *ContactForm::createGroupLine()
{
    auto *line = new QFrame(this);
    line->setProperty("class", QStringLiteral("FormGroupLine"));
    line->setFixedHeight(groupLineHeight);
    m_grid->addWidget(line, m_grid->rowCount(), 0, 1, 2);
    return line;
}

QWidget *ContactForm::createInput(ContactInput kind)
{
    switch (kind) {
    case ContactInput::Mac:
        return new IpLine(IpLine::Form::Mac, this);
    case ContactInput::Ip:
        return new IpLine(IpLine::Form::Ip, this);
    case ContactInput::Text:
    case ContactInput::Password: {
        auto *edit = new QLineEdit(this);
        // The default limit would cut off long texts of an imported list.
        edit->setMaxLength(std::numeric_limits<int>::max());
        if (kind == ContactInput::Password)
            edit->setEchoMode(QLineEdit::Password);
        return edit;
    }
    default:
        return createComboBox(kind);
    }
}

QWidget *ContactForm::createComboBox(ContactInput kind)
{
    auto *box = new QComboBox(this);
    box->addItems(choices(kind));
    // A long stored value must not widen the form.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    box->setFocusPolicy(Qt::StrongFocus);
    box->installEventFilter(this);
    return box;
}

bool ContactForm::eventFilter(QObject *watched, QEvent *event)
{
    // Scrolling through the form must not change a box that passes under the pointer.
    const auto *box = qobject_cast<QComboBox *>(watched);
    if (box && event->type() == QEvent::Wheel && !box->hasFocus()) {
        event->ignore();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void ContactForm::setRowsVisibleFrom(int first, bool visible)
{
    for (int i = first; i < m_rows.size(); ++i) {
        const Row &row = m_rows.at(i);
        row.label->setVisible(visible);
        row.input->setVisible(visible);
        if (row.groupLine)
            row.groupLine->setVisible(visible);
    }
}

void ContactForm::load(const ContactInfo &info)
{
    for (Row &row : m_rows) {
        if (!row.field)
            continue;
        const QString &value = info.*row.field;
        row.given = value;
        if (auto *line = qobject_cast<IpLine *>(row.input)) {
            line->setText(value);
        } else if (auto *edit = qobject_cast<QLineEdit *>(row.input)) {
            edit->setText(value);
        } else if (auto *box = qobject_cast<QComboBox *>(row.input)) {
            if (row.kind == ContactInput::YesNo)
                select(*box, row.kind, value == QLatin1String("0") ? 1 : 0, value);
            else if (row.kind == ContactInput::Language)
                select(*box, row.kind, languagePosition(value), value);
            else
                select(*box, row.kind, choices(row.kind).indexOf(value), value);
            row.givenIndex = box->currentIndex();
        }
    }
}

void ContactForm::store(ContactInfo &info) const
{
    for (const Row &row : m_rows) {
        if (!row.field)
            continue;
        QString &value = info.*row.field;
        if (const auto *line = qobject_cast<IpLine *>(row.input)) {
            value = line->value();
        } else if (const auto *edit = qobject_cast<QLineEdit *>(row.input)) {
            // A pasted text may contain the line end of a spreadsheet cell.
            value = edit->isModified() ? inOneLine(edit->text()) : edit->text();
        } else if (const auto *box = qobject_cast<QComboBox *>(row.input)) {
            // An unchanged box keeps the text of the record, even one that is not on offer.
            if (box->currentIndex() == row.givenIndex)
                value = row.given;
            else if (row.kind == ContactInput::Language)
                applyLanguageChoice(box->currentIndex(), value);
            else if (row.kind == ContactInput::YesNo)
                value = QLatin1String(box->currentIndex() == 0 ? "1" : "0");
            else
                value = box->currentText();
        }
    }
}

ContactInfo ContactForm::defaultContact()
{
    ContactInfo info;
    info.mac = QStringLiteral("02:00:A7:::");
    info.product = productModels().first();
    info.speech_coding1 = speechCodecs().at(0);
    info.speech_coding2 = speechCodecs().at(1);
    applyLanguageChoice(0, info.language);
    info.random_port = QStringLiteral("0");
    info.keep_alive = QStringLiteral("0");
    info.dial_plan = defaultDialPlan();
    return info;
}
