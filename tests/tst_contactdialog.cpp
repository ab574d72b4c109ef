#include "dialogs/ContactDialog.h"
#include "dialogs/IpLine.h"
#include "dialogs/IpPart.h"
#include "model/ContactFields.h"
#include "tests/FormFixture.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>

#include <functional>

namespace {

const QString macMessage = QStringLiteral("Please fulfill correct MAC address!");

/// A device whose texts all differ and are all on offer.
ContactInfo plainDevice()
{
    ContactInfo info;
    info.id = 7;
    for (const ContactField &field : contactFields())
        info.*field.member = QStringLiteral("a ") + QLatin1String(field.column);
    info.mac = QStringLiteral("02:00:A7:A1:B2:C3");
    info.product = QStringLiteral("DK71X");
    info.speech_coding1 = QStringLiteral("GSM");
    info.speech_coding2 = QStringLiteral("PCMU");
    info.language = QStringLiteral("zh-tw");
    info.random_port = QStringLiteral("1");
    info.keep_alive = QStringLiteral("0");
    info.ip = QStringLiteral("192.168.1.20");
    info.subnet = QStringLiteral("255.255.255.0");
    info.gateway_ip = QStringLiteral("192.168.1.1");
    info.dns_server1 = QStringLiteral("9.9.9.9");
    info.dns_server2 = QString();
    return info;
}

} // namespace

class TestContactDialog : public QObject, FormFixture<ContactDialog>
{
    Q_OBJECT

private slots:
    void initTestCase() { useStyleSheet(); }
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void addByKeyboard();
    void incompleteMacIsRefused_data();
    void incompleteMacIsRefused();
    void showsAndKeepsEveryField();
    void oddTextsSurvive_data();
    void oddTextsSurvive();
    void oddTextIsReplacedByChoice();
    void flags();
    void editEveryField();
    void closingForgetsTheRecord_data();
    void closingForgetsTheRecord();
    void closeIsLogged();
    void advancedRows();
    void wheelPassesBy();
    void toolTip();

private:
    void open(bool isAdd, ContactInfo *info)
    {
        m_dialog->loadContact(isAdd, info);
        showDialog();
    }
    QComboBox *box(const char *name) const { return input<QComboBox>(name); }
    QLineEdit *edit(const char *name) const { return input<QLineEdit>(name); }
    IpLine *address(const char *name) const { return input<IpLine>(name); }
};

// What an earlier device showed is gone, and what is not typed is as every new device has it.
void TestContactDialog::addByKeyboard()
{
    ContactInfo earlier = plainDevice();
    earlier.product = QStringLiteral("OLD1");
    open(false, &earlier);
    m_dialog->close();

    open(true, nullptr);
    QCOMPARE(box("productComboBox")->count(), 8);
    QSignalSpy added(m_dialog.get(), SIGNAL(addSaveSucceed(ContactInfo)));
    QSignalSpy edited(m_dialog.get(), SIGNAL(editSaveSucceed(ContactInfo *)));
    for (const char key : {'a', '1', 'b', '2', 'c', '3'})
        QTest::keyClick(QApplication::focusWidget(), key);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("1001 "));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);

    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(added.size(), 1);
    QCOMPARE(edited.size(), 0);
    ContactInfo expected;
    expected.mac = QStringLiteral("02:00:A7:A1:B2:C3");
    expected.product = QStringLiteral("KTP21XX");
    expected.first_account = QStringLiteral("1001 ");
    expected.speech_coding1 = QStringLiteral("PCMU");
    expected.speech_coding2 = QStringLiteral("PCMA");
    expected.language = QStringLiteral("en");
    expected.random_port = QStringLiteral("0");
    expected.keep_alive = QStringLiteral("0");
    expected.dial_plan = QStringLiteral("{ x+ | *x+ | *xx*x+ }");
    QCOMPARE(added.first().first().value<ContactInfo>(), expected);
}

void TestContactDialog::incompleteMacIsRefused_data()
{
    QTest::addColumn<QString>("mac");
    QTest::addColumn<int>("focus");
    QTest::newRow("one group missing") << "02:00:A7::11:22" << 3;
    QTest::newRow("no address") << "telephone" << 0;
}

void TestContactDialog::incompleteMacIsRefused()
{
    QFETCH(QString, mac);
    QFETCH(int, focus);

    ContactInfo device = plainDevice();
    device.mac = mac;
    const ContactInfo before = device;
    open(false, &device);
    QSignalSpy edited(m_dialog.get(), SIGNAL(editSaveSucceed(ContactInfo *)));
    edit("cityLineEdit")->setText(QStringLiteral("elsewhere"));
    QTest::mouseClick(input<QPushButton>("saveButton"), Qt::LeftButton);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(edited.size(), 0);
    QCOMPARE(device, before);
    QCOMPARE(visibleTip(), macMessage);
    QVERIFY(address("macIpLine")->parts().at(focus)->hasFocus());
}

void TestContactDialog::showsAndKeepsEveryField()
{
    ContactInfo device = plainDevice();
    const ContactInfo before = device;
    open(false, &device);
    QSignalSpy edited(m_dialog.get(), SIGNAL(editSaveSucceed(ContactInfo *)));
    QCOMPARE(address("subnetIpLine")->text(), device.subnet);
    QCOMPARE(box("productComboBox")->currentIndex(), 5);
    QCOMPARE(box("languageComboBox")->currentText(), QStringLiteral("Chinese Traditional"));
    QCOMPARE(edit("passwordLineEdit")->text(), device.password);
    QCOMPARE(edit("passwordLineEdit")->echoMode(), QLineEdit::Password);
    QVERIFY(edit("firstAccountLineEdit")->hasFocus());

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(edited.size(), 1);
    QCOMPARE(edited.first().first().value<ContactInfo *>(), &device);
    QCOMPARE(device, before);
}

void TestContactDialog::oddTextsSurvive_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("stored");
    const auto row = [](const char *name, const char *column, const QByteArray &stored) {
        QTest::newRow(name) << QString::fromLatin1(column) << QString::fromLatin1(stored);
    };
    row("bare mac", "mac", "0200a7a1b2c3");
    row("lower case mac", "mac", "02:00:a7:a1:b2:c3");
    row("narrow mac", "mac", "2:0:A7:A1:B2:C3");
    row("long mac", "mac", "02:00:A7:A1:B2:C3:D4");
    row("ip out of range", "ip", "10.0.0.256");
    row("host name", "dns_server1", "host.example.com");
    row("half an ip", "gateway_ip", "192.168");
    row("product in lower case", "product", "ktp16xx");
    row("no product", "product", "");
    row("unknown codec", "speech_coding1", "OPUS & Co");
    row("unknown language", "language", "tlh");
    row("no language", "language", "");
    row("blanks", "first_account", "  1001 ");
    row("line break", "dial_plan", "{ x+ }\n{ *x+ }\t");
    row("very long", "phonebook_path", QByteArray(40000, 'x'));
}

void TestContactDialog::oddTextsSurvive()
{
    QFETCH(QString, column);
    QFETCH(QString, stored);

    ContactInfo device = plainDevice();
    for (const ContactField &field : contactFields()) {
        if (column == QLatin1String(field.column))
            device.*field.member = stored;
    }
    const ContactInfo before = device;
    QVERIFY(before != plainDevice());
    open(false, &device);
    QSignalSpy edited(m_dialog.get(), SIGNAL(editSaveSucceed(ContactInfo *)));
    m_dialog->doSaveAction();
    QCOMPARE(edited.size(), 1);
    QCOMPARE(device, before);
}

void TestContactDialog::oddTextIsReplacedByChoice()
{
    ContactInfo device = plainDevice();
    device.product = QStringLiteral("OLD1");
    device.language = QStringLiteral("tlh");
    device.dns_server1 = QStringLiteral("host.example.com");
    device.mac = QStringLiteral("0200A7A1B2C3");
    open(false, &device);
    box("productComboBox")->setCurrentIndex(7);
    box("languageComboBox")->setCurrentIndex(19);
    input<QPushButton>("showAdvanceButton")->click();
    address("dnsServer1IpLine")->focusPart(0);
    QTest::keyClick(QApplication::focusWidget(), '8');
    address("macIpLine")->focusPart(5);
    QTest::keyClick(QApplication::focusWidget(), 'd');
    m_dialog->doSaveAction();
    QCOMPARE(device.product, QStringLiteral("KTV32XX"));
    QCOMPARE(device.language, QStringLiteral("en_gb"));
    QCOMPARE(device.dns_server1, QStringLiteral("8..."));
    QCOMPARE(device.mac, QStringLiteral("02:00:A7:A1:B2:DF"));
}

void TestContactDialog::flags()
{
    for (const char *const stored : {"0", "1", "", "No"}) {
        const QLatin1String flag(stored);
        ContactInfo device = plainDevice();
        device.random_port = flag;
        device.keep_alive = flag;
        open(false, &device);
        const QLatin1String shown(flag == QLatin1String("0") ? "No" : "Yes");
        QCOMPARE(box("randomPortComboBox")->currentText(), shown);
        QCOMPARE(box("keepAliveComboBox")->currentText(), shown);
        // Only the one that is turned changes.
        box("keepAliveComboBox")->setCurrentIndex(1);
        m_dialog->doSaveAction();
        QCOMPARE(device.random_port, flag);
        QCOMPARE(device.keep_alive, QStringLiteral("0"));
    }
}

// Every input reaches its own field, and only that one.
void TestContactDialog::editEveryField()
{
    ContactInfo device = ContactForm::defaultContact();
    device.id = 7;
    open(false, &device);
    const ContactInfo wanted = plainDevice();
    ContactInfo shown = wanted;
    shown.language = QStringLiteral("Chinese Traditional");
    shown.random_port = QStringLiteral("Yes");
    shown.keep_alive = QStringLiteral("No");
    enter(shown);
    m_dialog->doSaveAction();
    for (const ContactField &field : contactFields())
        QCOMPARE(device.*field.member, wanted.*field.member);
    QCOMPARE(device.id, wanted.id);
}

using Close = std::function<void(ContactDialog &)>;
Q_DECLARE_METATYPE(Close)

void TestContactDialog::closingForgetsTheRecord_data()
{
    QTest::addColumn<Close>("closeDialog");
    QTest::newRow("cancel") << Close([](ContactDialog &dialog) {
        dialog.findChild<QPushButton *>(QStringLiteral("cancelButton"))->click();
    });
    QTest::newRow("escape") << Close(
        [](ContactDialog &dialog) { QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape); });
    QTest::newRow("close button") << Close([](ContactDialog &dialog) { dialog.close(); });
    QTest::newRow("hide") << Close([](ContactDialog &dialog) { dialog.hide(); });
}

void TestContactDialog::closingForgetsTheRecord()
{
    QFETCH(Close, closeDialog);

    ContactInfo device = plainDevice();
    const ContactInfo before = device;
    open(false, &device);
    QSignalSpy edited(m_dialog.get(), SIGNAL(editSaveSucceed(ContactInfo *)));
    QSignalSpy added(m_dialog.get(), SIGNAL(addSaveSucceed(ContactInfo)));
    edit("cityLineEdit")->setText(QStringLiteral("elsewhere"));
    closeDialog(*m_dialog);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(device, before);

    // The record may be gone by now: nothing writes to it any more.
    m_dialog->doSaveAction();
    QCOMPARE(device, before);
    QCOMPARE(edited.size() + added.size(), 0);
}

void TestContactDialog::closeIsLogged()
{
    open(true, nullptr);
    QSignalSpy finished(m_dialog.get(), &QDialog::finished);
    debugLog().setEnabled(QtDebugMsg, true);
    QTest::ignoreMessage(QtDebugMsg, "doSaveAction.");
    m_dialog->doSaveAction();
    QTest::ignoreMessage(QtDebugMsg, "contact dialog close, m_isAdd =  true");
    QTest::ignoreMessage(QtDebugMsg, "m_curInfo = 0x0");
    m_dialog->close();
    QCOMPARE(finished.size(), 1);
}

void TestContactDialog::advancedRows()
{
    const auto *const area = input<QScrollArea>("formScrollArea");
    auto *const button = input<QPushButton>("showAdvanceButton");
    const auto shows = [&](bool advanced) {
        const QLatin1String text(advanced ? "Hide Advance Settings" : "Show Advance Settings");
        return button->text() == text && box("speechCoding2ComboBox")->isVisible() &&
               edit("usernameLineEdit")->isVisible() == advanced &&
               edit("proxyServerLineEdit")->isVisible() == advanced &&
               area->verticalScrollBar()->isVisible() == advanced;
    };
    open(true, nullptr);
    for (const bool advanced : {false, true, false, true}) {
        if (shows(!advanced))
            button->click();
        QTRY_VERIFY(shows(advanced));
        checkLayout();
    }
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
    m_dialog->close();
    open(true, nullptr);
    QTRY_VERIFY(shows(false));
}

void TestContactDialog::wheelPassesBy()
{
    open(true, nullptr);
    input<QPushButton>("showAdvanceButton")->click();
    auto *codec = box("speechCoding1ComboBox");
    const auto *bar = input<QScrollArea>("formScrollArea")->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    const auto turn = [codec] {
        const QPointF center = QRectF(codec->rect()).center();
        QWheelEvent event(center, codec->mapToGlobal(center.toPoint()), {}, QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        // Only what comes from the system climbs to the parents, and sendEvent() undoes that.
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(codec, &event);
    };
    turn();
    QCOMPARE(codec->currentIndex(), 0);
    QVERIFY(bar->value() > 0);
    codec->setFocus();
    turn();
    QCOMPARE(codec->currentIndex(), 1);
}

void TestContactDialog::toolTip()
{
    open(true, nullptr);
    auto *const tip = m_dialog->findChild<ToolTipWidget *>();
    const QWidget *const focused = QApplication::focusWidget();
    tip->showMessage(QStringLiteral("<b>short</b>"), input<QPushButton>("saveButton"), 20);
    QCOMPARE(visibleTip(), QStringLiteral("<b>short</b>"));
    QCOMPARE(QApplication::focusWidget(), focused);
    QVERIFY(m_dialog->isActiveWindow());
    QTRY_VERIFY(!tip->isVisible());

    // It does not outlive the dialog it belongs to.
    m_dialog->doSaveAction();
    QCOMPARE(visibleTip(), macMessage);
    m_dialog->close();
    QVERIFY(!tip->isVisible());
}

QTEST_MAIN(TestContactDialog)
#include "tst_contactdialog.moc"
