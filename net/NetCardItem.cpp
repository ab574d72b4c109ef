#include "net/NetCardItem.h"

#include <QLabel>
#include <QMouseEvent>
#include <QRadioButton>

namespace {

/// A button's text, with "&" shown as itself instead of underlining the next letter.
QString buttonText(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

NetCardItem::NetCardItem(const QString &name, const QStringList &ipList, QWidget *parent)
    : QWidget(parent)
    , m_name(name)
    , m_ipList(ipList)
    , m_radioButton(new QRadioButton(buttonText(name), this))
    , m_ipLabel(new QLabel(ipList.isEmpty() ? tr("No IP") : ipList.join(QLatin1Char(',')), this))
{
    setFixedSize(460, 30);
    m_radioButton->setObjectName(QStringLiteral("netCardRadioButton"));
    m_radioButton->setGeometry(0, 0, 300, 30);
    m_radioButton->setToolTip(m_name);
    m_radioButton->setAccessibleDescription(m_ipLabel->text());

    m_ipLabel->setObjectName(QStringLiteral("netCardIpLabel"));
    m_ipLabel->setTextFormat(Qt::PlainText);
    m_ipLabel->setGeometry(310, 0, 150, 30);
    m_ipLabel->setWordWrap(true);
    m_ipLabel->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_ipLabel->setToolTip(m_ipLabel->text());

    setFocusProxy(m_radioButton);
    connect(m_radioButton, &QRadioButton::toggled, this, &NetCardItem::cardToggled);
}

void NetCardItem::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_radioButton->click();
}

void NetCardItem::setChecked(bool checked)
{
    m_radioButton->setChecked(checked);
}

bool NetCardItem::isChecked() const
{
    return m_radioButton->isChecked();
}
