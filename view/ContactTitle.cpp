#include "view/ContactTitle.h"

#include "view/ColumnFollower.h"
#include "view/ColumnLayout.h"
#include "view/ContactModel.h"

#include <QLabel>

ContactTitle::ContactTitle(QTableView &table, QWidget *parent)
    : QFrame(parent)
{
    const QString name = QStringLiteral("ContactTitle");
    setObjectName(name);
    setProperty("class", name);
    setStyleSheet(QStringLiteral(".ContactTitle {border: 1px solid #B5B5B5;}"));
    setFixedHeight(32);

    auto *follower = new ColumnFollower(table, *this);
    for (int column = ContactModel::Product; column < ContactModel::ColumnCount; ++column) {
        auto *label = new QLabel(columnName(column), this);
        label->setObjectName(QStringLiteral("contactTitle_%1").arg(column));
        label->setProperty("class", QStringLiteral("ContactTitleLabel"));
        label->setTextFormat(Qt::PlainText);
        if (column >= ContactModel::Detail) {
            label->setAlignment(Qt::AlignCenter);
        } else {
            label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
            label->setIndent(ColumnLayout::textMargin);
        }
        follower->add(column, label);
    }
}

QString ContactTitle::columnName(int column)
{
    switch (column) {
    case ContactModel::Number:
        return tr("No.");
    case ContactModel::Mac:
        return tr("MAC");
    case ContactModel::Product:
        return tr("Product");
    case ContactModel::SipServer:
        return tr("SIP Server");
    case ContactModel::FirstAccount:
        return tr("Account");
    case ContactModel::SipUserId:
        return tr("SIP User ID");
    case ContactModel::City:
        return tr("City");
    case ContactModel::Company:
        return tr("Company");
    case ContactModel::Department:
        return tr("Department");
    case ContactModel::Detail:
        return tr("Detail");
    case ContactModel::Delete:
        return tr("Delete");
    default:
        return {};
    }
}
