#include "net/NetCardItem.h"
#include "net/NetCardSelectDialog.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

class TestNetCardDialog : public QObject
{
    Q_OBJECT

private slots:
    void itemTexts();
    void preselection();
    void oneItemChecked();
    void results();
};

namespace {

NetCardInfo card(const char *name, bool physical, const QStringList &ips)
{
    return NetCardInfo{QString::fromLatin1(name), physical, ips};
}

QStringList ip(const char *text)
{
    return {QString::fromLatin1(text)};
}

QList<NetCardItem *> itemsOf(const NetCardSelectDialog &dialog)
{
    QList<NetCardItem *> items;
    for (int i = 0;; ++i) {
        auto *item = dialog.findChild<NetCardItem *>(QStringLiteral("netCardItem%1").arg(i));
        if (!item)
            return items;
        items.append(item);
    }
}

template <typename T>
T *child(const QWidget &parent, const char *name)
{
    return parent.findChild<T *>(QString::fromLatin1(name));
}

} // namespace

void TestNetCardDialog::itemTexts()
{
    const NetCardItem two(QStringLiteral("A & B"),
                          {QStringLiteral("10.0.0.1"), QStringLiteral("10.0.0.2")}, nullptr);
    QCOMPARE(two.findChild<QRadioButton *>()->text(), QStringLiteral("A && B")); // shown as "A & B"
    QCOMPARE(two.findChild<QLabel *>()->text(), QStringLiteral("10.0.0.1,10.0.0.2"));
    const NetCardItem none(QStringLiteral("eth0"), {}, nullptr);
    QCOMPARE(none.findChild<QLabel *>()->text(), QStringLiteral("No IP"));
}

/// One dialog for all: what it showed before is gone.
void TestNetCardDialog::preselection()
{
    NetCardSelectDialog dialog;
    const auto check = [&dialog](const QVector<bool> &physical, int checked,
                                 const QStringList &selected) {
        QList<NetCardInfo> cards;
        for (int i = 0; i < physical.size(); ++i)
            cards.append(
                NetCardInfo{QString::number(i), physical[i], {QStringLiteral("10.0.0.%1").arg(i)}});
        dialog.setNetCards(cards);
        const QList<NetCardItem *> items = itemsOf(dialog);
        QCOMPARE(items.size(), physical.size());
        for (int i = 0; i < items.size(); ++i)
            QCOMPARE(items[i]->isChecked(), i == checked);
        QCOMPARE(dialog.selectedIpList(), selected);
    };
    check({true, true, false}, 0, ip("10.0.0.0"));
    check({false, true}, 1, ip("10.0.0.1"));
    check({false, false}, -1, ip("10.0.0.1")); // only virtual ones: the last
    check({}, -1, {});
}

void TestNetCardDialog::oneItemChecked()
{
    NetCardSelectDialog dialog;
    dialog.setNetCards({card("a", true, ip("10.0.0.1")), card("b", true, ip("10.0.0.2")),
                        card("c", false, ip("10.0.0.3"))});
    dialog.show();
    const QList<NetCardItem *> items = itemsOf(dialog);
    // The last one twice: a touched item stays checked.
    for (const int chosen : {2, 0, 1, 2, 2}) {
        QSignalSpy toggled(items[chosen], &NetCardItem::cardToggled);
        auto *radio = items[chosen]->findChild<QRadioButton *>();
        QTest::mouseClick(radio, Qt::LeftButton, {}, QPoint(10, 15));
        QVERIFY(!toggled.isEmpty());
        for (int i = 0; i < items.size(); ++i)
            QCOMPARE(items[i]->isChecked(), i == chosen);
        QCOMPARE(dialog.selectedIpList(), items[chosen]->ipList());
    }
    // Beside the name, and on the addresses.
    QTest::mouseClick(items[0], Qt::LeftButton, {}, QPoint(305, 15));
    QVERIFY(items[0]->isChecked());
    QTest::mouseClick(items[1]->findChild<QLabel *>(), Qt::LeftButton);
    QVERIFY(items[1]->isChecked() && !items[0]->isChecked());
}

void TestNetCardDialog::results()
{
    NetCardSelectDialog dialog;
    QSignalSpy finished(&dialog, &QDialog::finished);
    for (const char *button : {"netCardOkButton", "netCardCancelButton"}) {
        dialog.show();
        child<QPushButton>(dialog, button)->click();
        QVERIFY(!dialog.isVisible());
    }
    dialog.show();
    dialog.close();
    QCOMPARE(finished, (QList<QList<QVariant>>{{1}, {0}, {0}}));
}

QTEST_MAIN(TestNetCardDialog)
#include "tst_netcarddialog.moc"
