#include "net/NetCardItem.h"
#include "net/NetCardSelectDialog.h"
#include "tests/Literal.h"

#include <QLabel>
#include <QRadioButton>
#include <QTest>

class TestNetCardDialog : public QObject
{
    Q_OBJECT

private slots:
    void chooses()
    {
        NetCardSelectDialog dialog; // one for all: what it showed before is gone
        QList<NetCardItem *> items;
        const auto offer = [&](const QVector<bool> &physical, int checked) {
            QList<NetCardInfo> cards;
            for (const bool one : physical)
                cards.append({"A & B"_s, one, {QString::number(cards.size()), "10.0.0.2"_s}});
            dialog.setNetCards(cards);
            items.clear();
            while (auto *item =
                       dialog.findChild<NetCardItem *>("netCardItem%1"_s.arg(items.size())))
                items.append(item);
            QCOMPARE(items.size(), physical.size());
            for (int i = 0; i < items.size(); ++i)
                QCOMPARE(items[i]->isChecked(), i == checked);
        };
        const auto selected = [&] { return dialog.selectedIpList().value(0); };
        offer({false, true}, 1);
        QCOMPARE(selected(), "1"_s);
        offer({false, false}, -1); // only virtual ones: the last
        QCOMPARE(selected(), "1"_s);
        offer({}, -1);
        QCOMPARE(selected(), QString());
        offer({true, true, false}, 0);
        QCOMPARE(items[0]->findChild<QRadioButton *>()->text(), "A && B"_s); // shown as "A & B"
        QCOMPARE(items[0]->findChild<QLabel *>()->text(), "0,10.0.0.2"_s);

        dialog.show();
        // The last item is clicked twice, and stays checked.
        for (const int chosen : {2, 0, 1, 2, 2}) {
            QTest::mouseClick(items[chosen]->findChild<QRadioButton *>(), Qt::LeftButton, {},
                              QPoint(10, 15));
            for (int i = 0; i < items.size(); ++i)
                QCOMPARE(items[i]->isChecked(), i == chosen);
            QCOMPARE(selected(), QString::number(chosen));
        }
        // A click beside the name or on the addresses counts as well.
        QTest::mouseClick(items[0], Qt::LeftButton, {}, QPoint(305, 15));
        QVERIFY(items[0]->isChecked());
        QTest::mouseClick(items[1]->findChild<QLabel *>(), Qt::LeftButton);
        QVERIFY(items[1]->isChecked() && !items[0]->isChecked());
    }
};

QTEST_MAIN(TestNetCardDialog)
#include "tst_netcarddialog.moc"
