#include "net/NetCardItem.h"
#include "net/NetCardSelectDialog.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

class TestNetCardDialog : public QObject
{
    Q_OBJECT

private slots:
    void layout();
    void itemTexts();
    void preselection_data();
    void preselection();
    void oneItemChecked();
    void scrolls();
    void refill();
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

void TestNetCardDialog::layout()
{
    NetCardSelectDialog dialog;
    QCOMPARE(dialog.minimumSize(), QSize(500, 210));
    QCOMPARE(dialog.maximumSize(), QSize(500, 210));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Select avaliable NIC"));
    // Qt adds the system menu to whatever has a close button.
    QCOMPARE(dialog.windowFlags() & ~(Qt::WindowType_Mask | Qt::WindowSystemMenuHint),
             Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    QCOMPARE(child<QScrollArea>(dialog, "netCardScrollArea")->geometry(), QRect(10, 30, 480, 130));
    QCOMPARE(child<QPushButton>(dialog, "netCardOkButton")->geometry(), QRect(140, 170, 110, 30));
    QCOMPARE(child<QPushButton>(dialog, "netCardCancelButton")->geometry(),
             QRect(270, 170, 110, 30));

    QWidget parent;
    const NetCardSelectDialog inWindow(&parent);
    QVERIFY(inWindow.isWindow());
}

void TestNetCardDialog::itemTexts()
{
    const NetCardItem two(QStringLiteral("A & B"),
                          {QStringLiteral("10.0.0.1"), QStringLiteral("10.0.0.2")}, nullptr);
    QCOMPARE(two.size(), QSize(460, 30));
    const auto *radio = two.findChild<QRadioButton *>();
    const auto *label = two.findChild<QLabel *>();
    QCOMPARE(radio->geometry(), QRect(0, 0, 300, 30));
    QCOMPARE(radio->text(), QStringLiteral("A && B")); // shown as "A & B"
    QCOMPARE(label->geometry(), QRect(310, 0, 150, 30));
    QCOMPARE(label->text(), QStringLiteral("10.0.0.1,10.0.0.2"));
    QVERIFY(label->wordWrap());
    QCOMPARE(label->alignment(), Qt::AlignLeft | Qt::AlignVCenter);

    const NetCardItem none(QStringLiteral("eth0"), {}, nullptr);
    QCOMPARE(none.findChild<QLabel *>()->text(), QStringLiteral("No IP"));
}

void TestNetCardDialog::preselection_data()
{
    QTest::addColumn<QVector<bool>>("physical");
    QTest::addColumn<int>("checked");
    QTest::addColumn<QStringList>("selected");
    QTest::newRow("two physical") << QVector<bool>{true, true, false} << 0 << ip("10.0.0.0");
    QTest::newRow("second is physical") << QVector<bool>{false, true} << 1 << ip("10.0.0.1");
    QTest::newRow("only virtual: the last") << QVector<bool>{false, false} << -1 << ip("10.0.0.1");
    QTest::newRow("no cards") << QVector<bool>{} << -1 << QStringList();
}

void TestNetCardDialog::preselection()
{
    QFETCH(QVector<bool>, physical);
    QFETCH(int, checked);
    QList<NetCardInfo> cards;
    for (int i = 0; i < physical.size(); ++i)
        cards.append(
            NetCardInfo{QString::number(i), physical[i], {QStringLiteral("10.0.0.%1").arg(i)}});
    NetCardSelectDialog dialog;
    dialog.setNetCards(cards);

    const QList<NetCardItem *> items = itemsOf(dialog);
    QCOMPARE(items.size(), physical.size());
    for (int i = 0; i < items.size(); ++i)
        QCOMPARE(items[i]->isChecked(), i == checked);
    QTEST(dialog.selectedIpList(), "selected");
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

void TestNetCardDialog::scrolls()
{
    NetCardSelectDialog dialog;
    QList<NetCardInfo> cards;
    for (int i = 0; i < 6; ++i)
        cards.append(NetCardInfo{QString::number(i), false, {}});
    dialog.setNetCards(cards);
    dialog.show();

    const auto *container = child<QWidget>(dialog, "netCardContainer");
    QCOMPARE(container->size(), QSize(460, 240));
    QVERIFY(child<QScrollArea>(dialog, "netCardScrollArea")->verticalScrollBar()->maximum() > 0);
    const QList<NetCardItem *> items = itemsOf(dialog);
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(items[i]->size(), QSize(460, 30));
        QCOMPARE(items[i]->y() / 40, i); // each in its own row
    }
}

void TestNetCardDialog::refill()
{
    NetCardSelectDialog dialog;
    dialog.setNetCards({card("a", true, ip("10.0.0.1")), card("b", false, ip("10.0.0.2"))});
    dialog.setNetCards({card("c", true, ip("10.0.0.3"))});
    QCOMPARE(itemsOf(dialog).size(), 1);
    QCOMPARE(dialog.selectedIpList(), ip("10.0.0.3"));
    QCOMPARE(child<QWidget>(dialog, "netCardContainer")->height(), 40);
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
