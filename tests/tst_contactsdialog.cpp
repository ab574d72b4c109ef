#include "dialogs/BatchPreview.h"
#include "dialogs/ContactsDialog.h"
#include "dialogs/DeviceBatch.h"
#include "tests/FormFixture.h"

#include <QLabel>
#include <QSignalSpy>

namespace {

constexpr int farTooMany = 2000000000;

QString macsOf(const QList<ContactInfo> &devices)
{
    QStringList macs;
    for (const ContactInfo &device : devices)
        macs.append(device.mac);
    return macs.join(QLatin1Char(' '));
}

} // namespace

class TestContactsDialog : public QObject, FormFixture<ContactsDialog>
{
    Q_OBJECT

private slots:
    void initTestCase() { registerContactTypes(); }
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void lookAhead()
    {
        // Count, steps, first MAC, first user ID; and what is told.
        const std::pair<const char *, const char *> rows[] = {
            {"50|2|1|02:00:A8:00:00:10|1001",
             "50 devices: 02:00:A8:00:00:10 to 02:00:A8:00:00:72, user IDs 1001 to 1050"},
            {"2|-1|0|02:00:a8:00:00:10| 13800138000",
             "2 devices: 02:00:A8:00:00:10 to 02:00:A8:00:00:0F, user ID 13800138000"},
            {"3|1|1||7", "3 devices: the first MAC is not complete yet, user IDs 7 to 9"},
            {"1|1|1|02:00:A7:00:00:01|",
             "1 device: 02:00:A7:00:00:01, no user IDs\nIt is in the list already."},
            {"5|2147483648|x|02:00:A7:00:00:0F|5",
             "5 devices: 02:00:A7:00:00:0F to 02:00:A7:00:00:0F, user ID 5\n"
             "No usable number, counts as none: Law of increasing MAC, Law of increasing User ID. "
             "The MACs repeat from device 2 on. 1 of them is in the list already."},
            {"2000000000|2|1|FF:FF:FF:FF:FF:FC|9999999999999999999",
             "2 devices: FF:FF:FF:FF:FF:FC to FF:FF:FF:FF:FF:FE, no user IDs\n"
             "No usable number, counts as none: First SIP User ID. "
             "The numbers end at FF:FF:FF:FF:FF:FF."},
            {"5|-1|-2|00:00:00:00:00:01|1",
             "2 devices: 00:00:00:00:00:01 to 00:00:00:00:00:00, user IDs 1 to -1\n"
             "The numbers end at 00:00:00:00:00:00."},
            {"2|1|7|0f:ff:ff:ff:ff:ff|0", // zero is no user ID
             "2 devices: 0F:FF:FF:FF:FF:FF to 10:00:00:00:00:00, no user IDs"},
            {"7|1073741824|1|10:00:00:00:00:00|", // the product wraps
             "7 devices: 10:00:00:00:00:00 to 0F:FF:80:00:00:00, no user IDs\n"
             "The MACs repeat from device 5 on."},
            {"3|1|2147483647|0200A71|2147483647",
             "3 devices: 00:00:00:20:0A:71 to 00:00:00:20:0A:73, user IDs 2147483647 to "
             "6442450941"},
            {"two|2|1|02:00:A7:00:00:10|1",
             "No devices\nNo usable number, counts as none: Product Count."},
            {"100000|2|1|02:00:A8:00:00:10|",
             "100000 devices: 02:00:A8:00:00:10 to 02:00:A8:03:0D:4E, no user IDs"},
            {"100001|2|1|02:00:A7:00:00:10|1",
             "At most 100000 devices can be created in one step."}};
        const auto isListed = [](const QString &mac) { return mac.startsWith("02:00:A7"_s); };
        for (const auto &[typed, text] : rows) {
            const QStringList parts = QString(QLatin1String(typed)).split(QLatin1Char('|'));
            const BatchTexts texts = {parts.at(0), parts.at(1), parts.at(2), parts.at(3),
                                      parts.at(4)};
            QCOMPARE(BatchPreview::textOf(outlookOf(texts, isListed)), QLatin1String(text));
        }
    }

    void everyFieldReachesAllDevices()
    {
        ContactInfo expected = choosableDevice();
        m_dialog->setLookup([](const QString &mac) { return mac.endsWith("FE"_s); });
        open();
        enterChoices(expected);
        input<IpLine>("firstMacIpLine")->setText("02:00:a7:00:00:fe"_s);
        edit("firstSipUserIdLineEdit")->setText("00123"_s);
        // These inputs follow the first user ID. What is typed into them does not count.
        for (const char *const name : {"firstAuthIdLineEdit", "firstAccountLineEdit"}) {
            QCOMPARE(edit(name)->text(), "00123"_s);
            edit(name)->setText("5"_s);
        }
        QTRY_COMPARE(input<QLabel>("batchPreview")->text(),
                     "2 devices: 02:00:A7:00:00:FE to 02:00:A7:00:01:00, user IDs 123 to 124\n"
                     "1 of them is in the list already."_s);
        // A batch leaves the addresses empty, as no two devices share them.
        for (QString *const address : {&expected.ip, &expected.subnet, &expected.gateway_ip,
                                       &expected.dns_server1, &expected.dns_server2})
            address->clear();
        const QList<ContactInfo> devices = save();
        QCOMPARE(macsOf(devices), "02:00:A7:00:00:FE 02:00:A7:00:01:00"_s);
        for (int i = 0; i < devices.size(); ++i) {
            expected.mac = devices.at(i).mac;
            for (QString *const number :
                 {&expected.sip_user_id, &expected.auth_id, &expected.first_account})
                *number = QString::number(123 + i);
            for (const ContactField &field : contactFields())
                QCOMPARE(devices.at(i).*field.member, expected.*field.member);
        }
    }

    void refusals()
    {
        open();
        auto *bar = input<QScrollArea>("formScrollArea")->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        edit("productCountLineEdit")->setText(QString::number(farTooMany));
        const auto check = [&](const char *mac, const char *focus, const char *tip) {
            input<IpLine>("firstMacIpLine")->setText(QLatin1String(mac));
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
        m_dialog->close();
        QVERIFY(visibleTip().isEmpty());
        // Without devices there is nothing to refuse.
        for (const char *const count : {"0", "-2", "", "0x10", "4294967298"}) {
            open();
            edit("productCountLineEdit")->setText(QLatin1String(count));
            QVERIFY(save().isEmpty());
            QVERIFY(!m_dialog->isVisible());
        }
    }

    void resetBringsDefaults()
    {
        open();
        const ContactInfo fresh = save().constLast();
        QCOMPARE(fresh.mac, "02:00:A7:00:00:03"_s);
        open();
        const auto edits = m_dialog->findChildren<QLineEdit *>();
        for (QLineEdit *const line : edits)
            line->setText("7"_s);
        const auto boxes = m_dialog->findChildren<QComboBox *>();
        for (QComboBox *const box : boxes)
            box->setCurrentIndex(box->count() - 1 - box->currentIndex());
        m_dialog->close();
        m_dialog->reset();
        open();
        QVERIFY(edit("productCountLineEdit")->hasFocus());
        QCOMPARE(save().constLast(), fresh);
    }

private:
    void open()
    {
        m_dialog->reset();
        showDialog();
        input<IpLine>("firstMacIpLine")->setText("02:00:A7:00:00:01"_s);
    }
    /// Presses "Save" and returns what was handed over by the one signal.
    QList<ContactInfo> save()
    {
        const QSignalSpy added(m_dialog.get(), SIGNAL(addSaveSucceed(QList<ContactInfo>)));
        input<QPushButton>("saveButton")->click();
        [&] { QCOMPARE(added.size(), 1); }();
        return added.value(0).value(0).value<QList<ContactInfo>>();
    }

    QLineEdit *edit(const char *name) const { return input<QLineEdit>(name); }
};

QTEST_MAIN(TestContactsDialog)
#include "tst_contactsdialog.moc"
