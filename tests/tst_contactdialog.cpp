#include "dialogs/ContactDialog.h"
#include "dialogs/IpLine.h"
#include "dialogs/IpPart.h"
#include "model/ContactFields.h"
#include "tests/FormFixture.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>

#include <functional>
#include <vector>

namespace {

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
    void incompleteMacIsRefused();
    void oddTextsSurvive_data();
    void oddTextsSurvive();
    void oddTextIsReplacedByChoice();
    void flags();
    void editEveryField();
    void closingForgetsTheRecord();
    void comesBackWithWhatWasTyped();
    void advancedRows();
    void wheelPassesBy();

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

void TestContactDialog::incompleteMacIsRefused()
{
    ContactInfo device = plainDevice();
    device.mac = QStringLiteral("telephone");
    const ContactInfo before = device;
    open(false, &device);
    QSignalSpy edited(m_dialog.get(), SIGNAL(editSaveSucceed(ContactInfo *)));
    edit("cityLineEdit")->setText(QStringLiteral("elsewhere"));
    QTest::mouseClick(input<QPushButton>("saveButton"), Qt::LeftButton);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(edited.size(), 0);
    QCOMPARE(device, before);
    QCOMPARE(visibleTip(), QStringLiteral("Please fulfill correct MAC address!"));
    QVERIFY(address("macIpLine")->parts().first()->hasFocus());
}

void TestContactDialog::oddTextsSurvive_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("stored");
    const auto row = [](const char *name, const char *column, const QByteArray &stored) {
        QTest::newRow(name) << QString::fromLatin1(column) << QString::fromLatin1(stored);
    };
    row("nothing odd", "city", "elsewhere");
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
    open(false, &device);
    box("productComboBox")->setCurrentIndex(7);
    box("languageComboBox")->setCurrentIndex(19);
    input<QPushButton>("showAdvanceButton")->click();
    address("dnsServer1IpLine")->focusPart(0);
    QTest::keyClick(QApplication::focusWidget(), '8');
    m_dialog->doSaveAction();
    QCOMPARE(device.product, QStringLiteral("KTV32XX"));
    QCOMPARE(device.language, QStringLiteral("en_gb"));
    QCOMPARE(device.dns_server1, QStringLiteral("8..."));
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

void TestContactDialog::closingForgetsTheRecord()
{
    ContactInfo device = plainDevice();
    const ContactInfo before = device;
    QSignalSpy edited(m_dialog.get(), SIGNAL(editSaveSucceed(ContactInfo *)));
    const std::vector<std::function<void()>> ways = {
        [this] { input<QPushButton>("cancelButton")->click(); },
        [this] { QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Escape); },
        [this] { m_dialog->close(); },
        [this] { m_dialog->hide(); },
    };
    for (const auto &close : ways) {
        open(false, &device);
        edit("cityLineEdit")->setText(QStringLiteral("not this"));
        close();
        QVERIFY(!m_dialog->isVisible());
        // The record may be gone by now: nothing writes to it any more.
        m_dialog->doSaveAction();
        QCOMPARE(device, before);
    }
    QCOMPARE(edited.size(), 0);
}

// Whoever was handed the record may want it entered again: at once, or after a question.
void TestContactDialog::comesBackWithWhatWasTyped()
{
    ContactInfo device = plainDevice();
    bool refuse = true;
    connect(m_dialog.get(), &ContactDialog::editSaveSucceed, this, [&](ContactInfo *) {
        if (std::exchange(refuse, false))
            m_dialog->bringBack();
    });
    open(false, &device);
    edit("cityLineEdit")->setText(QStringLiteral("elsewhere"));
    m_dialog->doSaveAction();
    QVERIFY(m_dialog->isVisible());
    m_dialog->move(m_dialog->pos() + QPoint(31, 17));
    const QPoint place = m_dialog->pos();
    m_dialog->doSaveAction();
    QVERIFY(!m_dialog->isVisible());

    m_dialog->bringBackFor(&device);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(edit("cityLineEdit")->text(), QStringLiteral("elsewhere"));
    edit("cityLineEdit")->setText(QStringLiteral("at home"));
    m_dialog->doSaveAction();
    QCOMPARE(device.city, QStringLiteral("at home"));
    // And each time where it was closed.
    QCOMPARE(m_dialog->pos(), place);
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

QTEST_MAIN(TestContactDialog)
#include "tst_contactdialog.moc"
