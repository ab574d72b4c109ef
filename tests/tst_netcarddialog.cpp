#include "net/NetCardItem.h"
#include "net/NetCardSelectDialog.h"
#include "tests/Literal.h"

#include <QLabel>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

namespace {

QList<NetCardItem *> itemsOf(const NetCardSelectDialog &dialog)
{
    QList<NetCardItem *> items;
    while (auto *item = dialog.findChild<NetCardItem *>("netCardItem%1"_s.arg(items.size())))
        items.append(item);
    return items;
}

} // namespace

class TestNetCardDialog : public QObject
{
    Q_OBJECT

private slots:
    void itemTexts()
    {
        const NetCardItem item("A & B"_s, {"10.0.0.1"_s, "10.0.0.2"_s}, nullptr);
        QCOMPARE(item.findChild<QRadioButton *>()->text(), "A && B"_s); // shown as "A & B"
        QCOMPARE(item.findChild<QLabel *>()->text(), "10.0.0.1,10.0.0.2"_s);
        QCOMPARE(NetCardItem("A"_s, {}, nullptr).findChild<QLabel *>()->text(), "No IP"_s);
    }

    /// One dialog for all: what it showed before is gone.
    void preselection()
    {
        NetCardSelectDialog dialog;
        const auto check = [&dialog](const QVector<bool> &physical, int checked, int selected) {
            QList<NetCardInfo> cards;
            for (const bool one : physical)
                cards.append({QString::number(cards.size()), one, {QString::number(cards.size())}});
            dialog.setNetCards(cards);
            const QList<NetCardItem *> items = itemsOf(dialog);
            QCOMPARE(items.size(), physical.size());
            for (int i = 0; i < items.size(); ++i)
                QCOMPARE(items[i]->isChecked(), i == checked);
            QCOMPARE(dialog.selectedIpList(),
                     selected < 0 ? QStringList() : QStringList(QString::number(selected)));
        };
        check({true, true, false}, 0, 0);
        check({false, true}, 1, 1);
        check({false, false}, -1, 1); // only virtual ones: the last
        check({}, -1, -1);
    }

    void oneItemChecked()
    {
        NetCardSelectDialog dialog;
        dialog.setNetCards({{"a"_s, true, {"10.0.0.1"_s}},
                            {"b"_s, true, {"10.0.0.2"_s}},
                            {"c"_s, false, {"10.0.0.3"_s}}});
        dialog.show();
        const QList<NetCardItem *> items = itemsOf(dialog);
        // The last one twice: a touched item stays checked.
        for (const int chosen : {2, 0, 1, 2, 2}) {
            const QSignalSpy toggled(items[chosen], &NetCardItem::cardToggled);
            QTest::mouseClick(items[chosen]->findChild<QRadioButton *>(), Qt::LeftButton, {},
                              QPoint(10, 15));
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
};

QTEST_MAIN(TestNetCardDialog)
#include "tst_netcarddialog.moc"
