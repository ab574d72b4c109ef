#pragma once

#include "model/NetCardInfo.h"

#include <QDialog>
#include <QList>

class NetCardItem;
class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

/// Lets the user choose the network card whose address is announced to the phones.
class NetCardSelectDialog : public QDialog
{
    Q_OBJECT

public:
    explicit NetCardSelectDialog(QWidget *parent = nullptr);

    /// Lists these cards in place of any earlier ones, with the first physical one checked.
    void setNetCards(const QList<NetCardInfo> &cards);

    /// The addresses of the checked card or, when none is checked, of the last one.
    QStringList selectedIpList() const;

private slots:
    void onOkButtonClicked();
    void onCancelButtonClicked();
    void onItemToggled(bool checked);

private:
    int m_count = 0;
    QScrollArea *m_scrollArea;
    QWidget *m_container;
    QVBoxLayout *m_layout;
    QLabel *m_emptyLabel;
    QPushButton *m_okButton;
    QPushButton *m_cancelButton;
    QList<NetCardItem *> m_items;
};
