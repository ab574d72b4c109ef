#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;
class QRadioButton;

/// One line of the card chooser: a radio button with the card's name, and its addresses.
class NetCardItem : public QWidget
{
    Q_OBJECT

public:
    NetCardItem(const QString &name, const QStringList &ipList, QWidget *parent);

    void setChecked(bool checked);
    bool isChecked() const;
    /// The card's IPv4 addresses.
    QStringList ipList() const { return m_ipList; }

signals:
    /// The radio button changed, by the user or by setChecked().
    void cardToggled(bool checked);

protected:
    /// The whole line chooses the card, its addresses included.
    void mousePressEvent(QMouseEvent *event) override;

private:
    QString m_name;
    QStringList m_ipList;
    QRadioButton *m_radioButton;
    QLabel *m_ipLabel;
};
