#include "net/NetCardItem.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QRadioButton>
#include <QStyleOptionButton>

namespace {

/// A button's text, with "&" shown as itself instead of underlining the next letter.
QString buttonText(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// Shortens a name that does not fit; the tool tip shows all of it.
class NameButton : public QRadioButton
{
public:
    using QRadioButton::QRadioButton;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QStyleOptionButton option;
        initStyleOption(&option);
        const QRect room = style()->subElementRect(QStyle::SE_RadioButtonContents, &option, this);
        option.text = fontMetrics().elidedText(option.text, Qt::ElideRight, room.width(),
                                               Qt::TextShowMnemonic);
        QPainter painter(this);
        style()->drawControl(QStyle::CE_RadioButton, &option, &painter, this);
    }
};

/// Breaks a list of addresses after a comma, where word wrap would not. Shortens a list that does
/// not fit two lines; the tool tip shows all of it.
class AddressLabel : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        const QFontMetrics metrics = fontMetrics();
        QString first = text();
        QString second;
        while (metrics.horizontalAdvance(first) > width()) {
            const int comma = first.lastIndexOf(QLatin1Char(','), -2);
            if (comma < 0)
                break;
            second.prepend(first.mid(comma + 1));
            first.truncate(comma + 1);
        }
        if (!second.isEmpty())
            first += QLatin1Char('\n') + metrics.elidedText(second, Qt::ElideRight, width());
        QPainter painter(this);
        style()->drawItemText(&painter, rect(), static_cast<int>(alignment()), palette(),
                              isEnabled(), first, foregroundRole());
    }
};

} // namespace

NetCardItem::NetCardItem(const QString &name, const QStringList &ipList, QWidget *parent)
    : QWidget(parent)
    , m_name(name)
    , m_ipList(ipList)
    , m_radioButton(new NameButton(buttonText(name), this))
    , m_ipLabel(
          new AddressLabel(ipList.isEmpty() ? tr("No IP") : ipList.join(QLatin1Char(',')), this))
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
