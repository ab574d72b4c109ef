#include "dialogs/BatchPreview.h"
#include "dialogs/ContactsDialog.h"
#include "dialogs/DeviceBatch.h"
#include "dialogs/IpLine.h"
#include "model/ContactFields.h"
#include "tests/FormFixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>

#include <limits>

namespace {

constexpr int manyDevices = 2000000000;

QStringList macsOf(const QList<ContactInfo> &devices)
{
    QStringList macs;
    for (const ContactInfo &device : devices)
        macs.append(device.mac);
    return macs;
}

DeviceBatch batchOf(const QString &firstMac, int count, int macStep)
{
    DeviceBatch batch;
    batch.firstMac = firstMac;
    batch.count = count;
    batch.macStep = macStep;
    return batch;
}

} // namespace

class TestContactsDialog : public QObject, FormFixture<ContactsDialog>
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void addresses_data();
    void addresses();
    void userIds_data();
    void userIds();
    void tooMany();
    void lookAhead_data();
    void lookAhead();

    void createByKeyboard();
    void everyFieldReachesAllDevices();
    void mirroredFields();
    void countWithoutDevices();
    void refusals();
    void resetBringsDefaults();

private:
    void open()
    {
        m_dialog->reset();
        showDialog();
    }
    QList<ContactInfo> save();
    void setFirstMac(const QString &mac) { input<IpLine>("firstMacIpLine")->setText(mac); }
    QLineEdit *edit(const char *name) const { return input<QLineEdit>(name); }
    QComboBox *box(const char *name) const { return input<QComboBox>(name); }
};

void TestContactsDialog::initTestCase()
{
    registerContactTypes();
    useStyleSheet();
}

/// Presses "Save" and returns what was handed over by the one signal.
QList<ContactInfo> TestContactsDialog::save()
{
    QSignalSpy added(m_dialog.get(), SIGNAL(addSaveSucceed(QList<ContactInfo>)));
    input<QPushButton>("saveButton")->click();
    return added.size() == 1 ? added.first().first().value<QList<ContactInfo>>()
                             : QList<ContactInfo>{ContactInfo(), ContactInfo(), ContactInfo()};
}

void TestContactsDialog::addresses_data()
{
    QTest::addColumn<QString>("firstMac");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("step");
    QTest::addColumn<QString>("macs");
    QTest::newRow("carry") << "0200A70000FE" << 3 << 2
                           << "02:00:A7:00:00:FE 02:00:A7:00:01:00 02:00:A7:00:01:02";
    QTest::newRow("carry over all groups")
        << "0fffffffffff" << 2 << 1 << "0F:FF:FF:FF:FF:FF 10:00:00:00:00:00";
    QTest::newRow("last address") << "FFFFFFFFFFFF" << 2 << 1 << "FF:FF:FF:FF:FF:FF";
    QTest::newRow("below zero") << "000000000001" << 5 << -1
                                << "00:00:00:00:00:01 00:00:00:00:00:00";
    QTest::newRow("step 0") << "0200A7000001" << 2 << 0 << "02:00:A7:00:00:01 02:00:A7:00:00:01";
    QTest::newRow("product wraps") << "100000000000" << 6 << 0x40000000
                                   << "10:00:00:00:00:00 10:00:40:00:00:00 0F:FF:80:00:00:00 "
                                      "0F:FF:C0:00:00:00 10:00:00:00:00:00 10:00:40:00:00:00";
    QTest::newRow("narrow group") << "0200A71" << 2 << 1 << "00:00:00:20:0A:71 00:00:00:20:0A:72";
    QTest::newRow("fewer than none") << "0200A7000001" << -3 << 2 << "";
}

void TestContactsDialog::addresses()
{
    QFETCH(QString, firstMac);
    QFETCH(int, count);
    QFETCH(int, step);
    QFETCH(QString, macs);

    const DeviceBatch batch = batchOf(firstMac, count, step);
    const QStringList expected = macs.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QCOMPARE(macsOf(makeDevices(batch)), expected);
    QCOMPARE(deviceCount(batch), expected.size());
}

void TestContactsDialog::userIds_data()
{
    QTest::addColumn<qint64>("first");
    QTest::addColumn<int>("step");
    QTest::addColumn<QStringList>("userIds");
    const auto row = [](const char *name, qint64 first, int step, const char *ids) {
        QTest::newRow(name) << first << step << QString(QLatin1String(ids)).split(QLatin1Char(','));
    };
    constexpr int largest = std::numeric_limits<int>::max();
    row("rising", 1001, 1, "1001,1002,1003");
    row("same", 1001, 0, "1001,1001,1001");
    row("falling past zero", 1, -1, "1,0,-1");
    row("negative", -5, 5, "-5,0,5");
    row("zero is no user ID", 0, 7, ",,");
    row("eleven digits", 13800138000, 1, "13800138000,13800138001,13800138002");
    row("beyond 32 bits", largest, largest, "2147483647,4294967294,6442450941");
}

void TestContactsDialog::userIds()
{
    QFETCH(qint64, first);
    QFETCH(int, step);
    QFETCH(QStringList, userIds);

    DeviceBatch batch = batchOf(QStringLiteral("0200A7000001"), 3, 1);
    batch.firstUserId = first;
    batch.userIdStep = step;
    batch.common.auth_id = QStringLiteral("typed");
    batch.common.first_account = QStringLiteral("typed");
    const QList<ContactInfo> devices = makeDevices(batch);
    QCOMPARE(devices.size(), userIds.size());
    for (int i = 0; i < devices.size(); ++i) {
        QCOMPARE(devices.at(i).sip_user_id, userIds.at(i));
        QCOMPARE(devices.at(i).auth_id, userIds.at(i));
        QCOMPARE(devices.at(i).first_account, userIds.at(i));
    }
}

void TestContactsDialog::tooMany()
{
    const auto check = [](const char *firstMac, int count, int step, int expected) {
        const DeviceBatch batch = batchOf(QLatin1String(firstMac), count, step);
        QCOMPARE(deviceCount(batch), expected);
        QCOMPARE(makeDevices(batch).size(), qMin(expected, maxBatchDevices));
    };
    check("FFFFFFFFFFFD", manyDevices, 2, 2);
    check("0200A7000001", manyDevices, 0, maxBatchDevices + 1);
    check("0200A7000001", 100001, 1, maxBatchDevices + 1);
    check("0200A7000001", 100000, 1, maxBatchDevices);
}

void TestContactsDialog::lookAhead_data()
{
    QTest::addColumn<QString>("typed"); // count, steps, first MAC, first user ID
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *typed, const char *text) {
        QTest::newRow(name) << QString(QLatin1String(typed)) << QString(QLatin1String(text));
    };
    row("plain", "50|2|1|02:00:A8:00:00:10|1001",
        "50 devices: 02:00:A8:00:00:10 to 02:00:A8:00:00:72, user IDs 1001 to 1050");
    row("eleven digits", "2|-1|0|02:00:a8:00:00:10| 13800138000",
        "2 devices: 02:00:A8:00:00:10 to 02:00:A8:00:00:0F, user ID 13800138000");
    row("incomplete", "3|1|1||7", "3 devices: the first MAC is not complete yet, user IDs 7 to 9");
    row("one, listed", "1|1|1|02:00:A7:00:00:01|",
        "1 device: 02:00:A7:00:00:01, no user IDs\nIt is in the list already.");
    row("listed, repeated", "5|2147483648|x|02:00:A7:00:00:0F|5",
        "5 devices: 02:00:A7:00:00:0F to 02:00:A7:00:00:0F, user ID 5\n"
        "No usable number, counts as none: Law of increasing MAC, Law of increasing User ID. "
        "The MACs repeat from device 2 on. 1 of them is in the list already.");
    row("product wraps", "6|1073741824|1|10:00:00:00:00:00|0",
        "6 devices: 10:00:00:00:00:00 to 10:00:40:00:00:00, no user IDs\n"
        "The MACs repeat from device 5 on.");
    row("highest", "9|2|1|FF:FF:FF:FF:FF:FC|9999999999999999999",
        "2 devices: FF:FF:FF:FF:FF:FC to FF:FF:FF:FF:FF:FE, no user IDs\n"
        "No usable number, counts as none: First SIP User ID. "
        "The numbers end at FF:FF:FF:FF:FF:FF.");
    row("listed", "3|1|0|02:00:A7:00:00:01|5",
        "3 devices: 02:00:A7:00:00:01 to 02:00:A7:00:00:03, user ID 5\n"
        "3 of them are in the list already.");
    row("lowest", "9|-1|1|00:00:00:00:00:00|1",
        "1 device: 00:00:00:00:00:00, user ID 1\nThe numbers end at 00:00:00:00:00:00.");
    row("no count", "two|2|1|02:00:A7:00:00:10|1",
        "No devices\nNo usable number, counts as none: Product Count.");
    row("too many", "100001|2|1|02:00:A7:00:00:10|1",
        "At most 100000 devices can be created in one step.");
}

void TestContactsDialog::lookAhead()
{
    QFETCH(QString, typed);
    QFETCH(QString, text);
    const QStringList parts = typed.split(QLatin1Char('|'));
    const BatchTexts texts = {parts.at(0), parts.at(1), parts.at(2), parts.at(3), parts.at(4)};
    const auto isListed = [](const QString &mac) {
        return mac.startsWith(QLatin1String("02:00:A7"));
    };
    QCOMPARE(BatchPreview::textOf(outlookOf(texts, isListed)), text);
}

void TestContactsDialog::createByKeyboard()
{
    m_dialog->setLookup([](const QString &mac) { return mac.endsWith(QLatin1String("FF")); });
    open();
    const auto type = [](const char *keys) {
        // The focus moves on while an address is typed.
        for (const char *key = keys; *key; ++key)
            QTest::keyClick(QApplication::focusWidget(), *key);
    };
    const auto tab = [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); };
    type("3");
    tab();
    type("1");
    tab();
    type("10");
    for (int i = 0; i < 4; ++i) // over the maker's three bytes
        tab();
    type("0000ff");
    tab();
    tab();
    type("10.0.0.1");
    tab();
    type("00123");
    QTRY_COMPARE(input<QLabel>("batchPreview")->text(),
                 QStringLiteral("3 devices: 02:00:A7:00:00:FF to 02:00:A7:00:01:01, "
                                "user IDs 123 to 143\n1 of them is in the list already."));
    QSignalSpy added(m_dialog.get(), SIGNAL(addSaveSucceed(QList<ContactInfo>)));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(added.size(), 1);

    QStringList made;
    const auto devices = added.first().first().value<QList<ContactInfo>>();
    for (const ContactInfo &device : devices)
        made.append(device.mac + QLatin1Char(' ') + device.sip_user_id + QLatin1Char(' ') +
                    device.sip_server);
    QCOMPARE(made, QStringList({QStringLiteral("02:00:A7:00:00:FF 123 10.0.0.1"),
                                QStringLiteral("02:00:A7:00:01:00 133 10.0.0.1"),
                                QStringLiteral("02:00:A7:00:01:01 143 10.0.0.1")}));
}

void TestContactsDialog::everyFieldReachesAllDevices()
{
    ContactInfo expected;
    for (const ContactField &field : contactFields())
        expected.*field.member = QStringLiteral("a ") + QLatin1String(field.column);
    expected.product = QStringLiteral("DK71X");
    expected.speech_coding1 = QStringLiteral("GSM");
    expected.speech_coding2 = QStringLiteral("PCMU");
    expected.language = QStringLiteral("Chinese Traditional");
    expected.random_port = QStringLiteral("Yes");
    open();
    enter(expected);
    setFirstMac(QStringLiteral("02:00:a7:00:00:fe"));
    edit("firstSipUserIdLineEdit")->setText(QStringLiteral("00123"));

    expected.language = QStringLiteral("zh-tw");
    expected.random_port = QStringLiteral("1");
    expected.keep_alive = QStringLiteral("0");
    // These cannot be the same for all, and are left to the telephone.
    for (QString *const address : {&expected.ip, &expected.subnet, &expected.gateway_ip,
                                   &expected.dns_server1, &expected.dns_server2})
        address->clear();
    const QStringList macs = {QStringLiteral("02:00:A7:00:00:FE"),
                              QStringLiteral("02:00:A7:00:01:00")};
    const QList<ContactInfo> devices = save();
    QCOMPARE(macsOf(devices), macs);
    for (int i = 0; i < devices.size(); ++i) {
        expected.mac = macs.at(i);
        expected.sip_user_id = QString::number(123 + i);
        expected.auth_id = expected.sip_user_id;
        expected.first_account = expected.sip_user_id;
        for (const ContactField &field : contactFields())
            QCOMPARE(devices.at(i).*field.member, expected.*field.member);
    }
}

void TestContactsDialog::mirroredFields()
{
    open();
    setFirstMac(QStringLiteral("02:00:A7:00:00:01"));
    edit("firstSipUserIdLineEdit")->setFocus();
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("1001"));
    QCOMPARE(edit("firstAuthIdLineEdit")->text(), QStringLiteral("1001"));
    QCOMPARE(edit("firstAccountLineEdit")->text(), QStringLiteral("1001"));

    // What is typed into the followers is of no account.
    QTest::keyClicks(edit("firstAuthIdLineEdit"), QStringLiteral("5"));
    edit("firstAccountLineEdit")->clear();
    const QList<ContactInfo> devices = save();
    QCOMPARE(devices.size(), 2);
    QCOMPARE(devices.last().auth_id, QStringLiteral("1002"));
    QCOMPARE(devices.last().first_account, QStringLiteral("1002"));
}

void TestContactsDialog::countWithoutDevices()
{
    for (const char *const count : {"0", "-2", "", "0x10", "4294967298"}) {
        open();
        setFirstMac(QStringLiteral("02:00:A7:00:00:01"));
        edit("productCountLineEdit")->setText(QLatin1String(count));
        QCOMPARE(save().size(), 0);
        QVERIFY(!m_dialog->isVisible());
    }
}

void TestContactsDialog::refusals()
{
    open();
    QSignalSpy added(m_dialog.get(), SIGNAL(addSaveSucceed(QList<ContactInfo>)));
    auto *bar = input<QScrollArea>("formScrollArea")->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    const auto check = [&](const char *mac, const char *focus, const char *tip) {
        setFirstMac(QLatin1String(mac));
        edit("productCountLineEdit")->setText(QString::number(manyDevices));
        bar->setValue(bar->maximum());
        QTest::mouseClick(input<QPushButton>("saveButton"), Qt::LeftButton);
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(visibleTip(), QLatin1String(tip));
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(focus));
        QVERIFY(!QApplication::focusWidget()->visibleRegion().isEmpty());
    };
    check("02:00:A7::11:22", "segment4IpPart", "Please fulfill correct MAC address!");
    check("02:00:A7:00:11:22", "productCountLineEdit",
          "At most 100000 devices can be created in one step.");
    QCOMPARE(added.size(), 0);
    m_dialog->close();
    QVERIFY(visibleTip().isEmpty());
}

void TestContactsDialog::resetBringsDefaults()
{
    open();
    setFirstMac(QStringLiteral("02:00:A7:00:00:01"));
    const ContactInfo fresh = save().last();
    open();
    const auto edits = m_dialog->findChildren<QLineEdit *>();
    for (QLineEdit *const line : edits)
        line->setText(QStringLiteral("7"));
    const auto boxes = m_dialog->findChildren<QComboBox *>();
    for (QComboBox *const comboBox : boxes)
        comboBox->setCurrentIndex(comboBox->count() - 1 - comboBox->currentIndex());
    m_dialog->close();
    open();
    QVERIFY(edit("productCountLineEdit")->hasFocus());
    QCOMPARE(edit("firstAccountLineEdit")->text(), QString());
    QCOMPARE(input<IpLine>("firstMacIpLine")->text(), QStringLiteral("02:00:A7:::"));
    setFirstMac(QStringLiteral("02:00:A7:00:00:01"));
    const QList<ContactInfo> devices = save();
    QCOMPARE(devices.size(), 2);
    QCOMPARE(devices.last(), fresh);
    QCOMPARE(fresh.mac, QStringLiteral("02:00:A7:00:00:03"));
}

QTEST_MAIN(TestContactsDialog)
#include "tst_contactsdialog.moc"
