#include "net/NetCardSelectDialog.h"

#include "net/NetCardItem.h"
#include "widgets/Modal.h"
#include "widgets/OpenWhereClosed.h"
#include "widgets/ScrollArea.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int rowHeight = 40;
}

NetCardSelectDialog::NetCardSelectDialog(QWidget *parent)
    : QDialog(parent)
    , m_scrollArea(new ScrollArea(this))
    , m_container(new QWidget)
    , m_layout(new QVBoxLayout(m_container))
    , m_emptyLabel(new QLabel(tr("No network card was found."), this))
    , m_okButton(new QPushButton(tr("OK"), this))
    , m_cancelButton(new QPushButton(tr("Cancel"), this))
{
    // Without a parent the dialog is a window anyway; with one, the flag has to say so.
    const Qt::WindowFlags type = parent ? Qt::Dialog : Qt::Widget;
    setWindowFlags(type | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowCloseButtonHint);
    setObjectName(QStringLiteral("netCardSelectDialog"));
    setWindowTitle(tr("Select avaliable NIC"));
    setWindowIcon(Modal::windowIcon());
    setFixedSize(500, 210);
    openWhereClosed(*this);

    m_container->setObjectName(QStringLiteral("netCardContainer"));
    m_container->setFixedWidth(460);
    m_layout->setContentsMargins(0, 0, 0, 0);

    m_scrollArea->setObjectName(QStringLiteral("netCardScrollArea"));
    m_scrollArea->setAccessibleName(windowTitle());
    m_scrollArea->setFocusPolicy(Qt::NoFocus); // it follows the cards, which have the focus
    m_scrollArea->setGeometry(10, 30, 480, 130);
    m_scrollArea->setWidget(m_container);

    m_emptyLabel->setObjectName(QStringLiteral("netCardEmptyLabel"));
    m_emptyLabel->setAlignment(Qt::AlignCenter);
    m_emptyLabel->setGeometry(m_scrollArea->geometry());

    m_okButton->setObjectName(QStringLiteral("netCardOkButton"));
    m_okButton->setGeometry(140, 170, 110, 30);
    m_cancelButton->setObjectName(QStringLiteral("netCardCancelButton"));
    m_cancelButton->setGeometry(270, 170, 110, 30);

    connect(m_okButton, &QPushButton::clicked, this, &NetCardSelectDialog::onOkButtonClicked);
    connect(m_cancelButton, &QPushButton::clicked, this,
            &NetCardSelectDialog::onCancelButtonClicked);
}

void NetCardSelectDialog::setNetCards(const QList<NetCardInfo> &cards)
{
    qDeleteAll(m_items);
    m_items.clear();
    m_count = cards.size();

    const auto firstPhysical = std::find_if(
        cards.cbegin(), cards.cend(), [](const NetCardInfo &card) { return card.isPhysical; });
    for (auto card = cards.cbegin(); card != cards.cend(); ++card) {
        auto *item = new NetCardItem(card->name, card->ipList, m_container);
        item->setObjectName(QStringLiteral("netCardItem%1").arg(m_items.size()));
        item->setChecked(card == firstPhysical);
        connect(item, &NetCardItem::cardToggled, this, &NetCardSelectDialog::onItemToggled);
        m_items.append(item);
        m_layout->addWidget(item);
    }
    m_container->setFixedHeight(rowHeight * m_count);
    m_emptyLabel->setVisible(m_count == 0);
}

QStringList NetCardSelectDialog::selectedIpList() const
{
    const auto checked = std::find_if(m_items.cbegin(), m_items.cend(),
                                      [](const NetCardItem *item) { return item->isChecked(); });
    if (checked != m_items.cend())
        return (*checked)->ipList();
    return m_items.isEmpty() ? QStringList() : m_items.last()->ipList();
}

void NetCardSelectDialog::onOkButtonClicked()
{
    done(Accepted);
}

void NetCardSelectDialog::onCancelButtonClicked()
{
    done(Rejected);
}

void NetCardSelectDialog::onItemToggled(bool checked)
{
    // Whether it was checked or unchecked: the card that the user touched is the chosen one.
    Q_UNUSED(checked)
    const QObject *touched = sender(); // sender() forgets it once it is disconnected
    for (NetCardItem *item : qAsConst(m_items)) {
        disconnect(item, &NetCardItem::cardToggled, this, &NetCardSelectDialog::onItemToggled);
        item->setChecked(item == touched);
        connect(item, &NetCardItem::cardToggled, this, &NetCardSelectDialog::onItemToggled);
    }
}
