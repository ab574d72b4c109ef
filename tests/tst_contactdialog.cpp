#include "dialogs/ContactDialog.h"
#include "dialogs/ContactForm.h"
#include "dialogs/IpLine.h"
#include "dialogs/IpPart.h"
#include "model/ContactFields.h"
#include "model/DebugLog.h"
#include "model/ValueTables.h"
#include "widgets/ToolTipWidget.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

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

class TestContactDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void addByKeyboard();
    void addDefaults();
    void incompleteMacIsRefused_data();
    void incompleteMacIsRefused();
    void showsAndKeepsEveryField();
    void oddTextsSurvive_data();
    void oddTextsSurvive();
    void oddTextsDoNotStay();
    void oddTextIsReplacedByChoice();
    void flags_data();
    void flags();
    void editEveryField();
    void closingForgetsTheRecord_data();
    void closingForgetsTheRecord();
    void closeIsLogged();
    void advancedRows();
    void layoutFits_data();
    void layoutFits();
    void styleClassesAndNames();
    void wheelPassesBy();
    void toolTip();

private:
    void open(bool isAdd, ContactInfo *info);
    QString visibleTip() const;
    template <typename Input>
    Input *input(const char *name) const
    {
        auto *found = m_dialog->findChild<Input *>(QLatin1String(name));
        Q_ASSERT(found);
        return found;
    }

    ContactDialog *m_dialog = nullptr;
};

void TestContactDialog::initTestCase()
{
    // The size of the texts is the style sheet's business, and whether they fit is ours.
    QFile sheet(QStringLiteral(VL_SOURCE_DIR "/resource/style.qss"));
    QVERIFY(sheet.open(QIODevice::ReadOnly));
    qApp->setStyleSheet(QString::fromUtf8(sheet.readAll()));
}

void TestContactDialog::init()
{
    m_dialog = new ContactDialog;
}

void TestContactDialog::cleanup()
{
    delete m_dialog;
    debugLog().setEnabled(QtDebugMsg, false);
}

void TestContactDialog::open(bool isAdd, ContactInfo *info)
{
    m_dialog->loadContact(isAdd, info);
    m_dialog->show();
    QApplication::setActiveWindow(m_dialog);
    QVERIFY(QTest::qWaitForWindowActive(m_dialog));
}

QString TestContactDialog::visibleTip() const
{
    const auto *tip = m_dialog->findChild<ToolTipWidget *>();
    return tip->isVisible() ? tip->text() : QString();
}

void TestContactDialog::addByKeyboard()
{
    open(true, nullptr);
    QSignalSpy added(m_dialog, SIGNAL(addSaveSucceed(ContactInfo)));
    QSignalSpy edited(m_dialog, SIGNAL(editSaveSucceed(ContactInfo *)));
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
    ContactInfo expected = ContactForm::defaultContact();
    expected.mac = QStringLiteral("02:00:A7:A1:B2:C3");
    expected.product = QStringLiteral("KTP21XX");
    expected.first_account = QStringLiteral("1001 ");
    QCOMPARE(added.first().first().value<ContactInfo>(), expected);
}

void TestContactDialog::addDefaults()
{
    ContactInfo device = plainDevice();
    open(false, &device);
    m_dialog->close();
    open(true, nullptr);
    QCOMPARE(input<IpLine>("macIpLine")->text(), QStringLiteral("02:00:A7:::"));
    QCOMPARE(input<QComboBox>("productComboBox")->currentText(), QStringLiteral("KTP16XX"));
    QCOMPARE(input<QComboBox>("speechCoding1ComboBox")->currentText(), QStringLiteral("PCMU"));
    QCOMPARE(input<QComboBox>("speechCoding2ComboBox")->currentText(), QStringLiteral("PCMA"));
    QCOMPARE(input<QComboBox>("languageComboBox")->currentText(), QStringLiteral("English(US)"));
    QCOMPARE(input<QComboBox>("randomPortComboBox")->currentText(), QStringLiteral("No"));
    QCOMPARE(input<QComboBox>("keepAliveComboBox")->currentText(), QStringLiteral("No"));
    QCOMPARE(input<QLineEdit>("dialPlanLineEdit")->text(), QStringLiteral("{ x+ | *x+ | *xx*x+ }"));
    int empty = 0;
    const auto edits = m_dialog->findChildren<QLineEdit *>();
    for (const QLineEdit *edit : edits)
        empty += edit->text().isEmpty() ? 1 : 0;
    // 11 plain lines, 3 bytes of the MAC address and 5 addresses of 4 octets.
    QCOMPARE(empty, 11 + 3 + 20);
}

void TestContactDialog::incompleteMacIsRefused_data()
{
    QTest::addColumn<QString>("mac");
    QTest::addColumn<int>("focus");
    QTest::newRow("prefix") << "02:00:A7:::" << 3;
    QTest::newRow("one group missing") << "02:00:A7::11:22" << 3;
    QTest::newRow("nothing") << "" << 0;
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
    QSignalSpy edited(m_dialog, SIGNAL(editSaveSucceed(ContactInfo *)));
    input<QLineEdit>("cityLineEdit")->setText(QStringLiteral("elsewhere"));
    QTest::mouseClick(input<QPushButton>("saveButton"), Qt::LeftButton);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(edited.size(), 0);
    QCOMPARE(device, before);
    QCOMPARE(visibleTip(), macMessage);
    QVERIFY(input<IpLine>("macIpLine")->parts().at(focus)->hasFocus());
}

void TestContactDialog::showsAndKeepsEveryField()
{
    ContactInfo device = plainDevice();
    const ContactInfo before = device;
    open(false, &device);
    QSignalSpy edited(m_dialog, SIGNAL(editSaveSucceed(ContactInfo *)));
    QCOMPARE(input<IpLine>("macIpLine")->text(), device.mac);
    QCOMPARE(input<IpLine>("subnetIpLine")->text(), device.subnet);
    QCOMPARE(input<QComboBox>("productComboBox")->currentIndex(), 5);
    QCOMPARE(input<QComboBox>("languageComboBox")->currentText(),
             QStringLiteral("Chinese Traditional"));
    QCOMPARE(input<QLineEdit>("passwordLineEdit")->text(), device.password);
    QCOMPARE(input<QLineEdit>("passwordLineEdit")->echoMode(), QLineEdit::Password);
    QVERIFY(input<QLineEdit>("firstAccountLineEdit")->hasFocus());

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(edited.size(), 1);
    QCOMPARE(edited.first().first().value<ContactInfo *>(), &device);
    QCOMPARE(device, before);
}

void TestContactDialog::oddTextsSurvive_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("stored");
    QTest::newRow("bare mac") << "mac"
                              << "0200a7a1b2c3";
    QTest::newRow("lower case mac") << "mac"
                                    << "02:00:a7:a1:b2:c3";
    QTest::newRow("mac with dashes") << "mac"
                                     << "02-00-A7-A1-B2-C3";
    QTest::newRow("narrow mac") << "mac"
                                << "2:0:A7:A1:B2:C3";
    QTest::newRow("long mac") << "mac"
                              << "02:00:A7:A1:B2:C3:D4";
    QTest::newRow("ip out of range") << "ip"
                                     << "10.0.0.256";
    QTest::newRow("host name") << "dns_server1"
                               << "host.example.com";
    QTest::newRow("half an ip") << "gateway_ip"
                                << "192.168";
    QTest::newRow("prefix length") << "subnet"
                                   << "/24";
    QTest::newRow("zero ip") << "ip"
                             << "0.0.0.0";
    QTest::newRow("unknown product") << "product"
                                     << "KTX99 & Co";
    QTest::newRow("product in lower case") << "product"
                                           << "ktp16xx";
    QTest::newRow("no product") << "product"
                                << "";
    QTest::newRow("unknown codec") << "speech_coding1"
                                   << "OPUS";
    QTest::newRow("no codec") << "speech_coding2"
                              << "";
    QTest::newRow("unknown language") << "language"
                                      << "tlh";
    QTest::newRow("no language") << "language"
                                 << "";
    QTest::newRow("blanks") << "first_account"
                            << "  1001 ";
    QTest::newRow("line break") << "dial_plan"
                                << "{ x+ }\n{ *x+ }\t";
    QTest::newRow("very long") << "phonebook_path" << QString(40000, QLatin1Char('x'));
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
    QSignalSpy edited(m_dialog, SIGNAL(editSaveSucceed(ContactInfo *)));
    m_dialog->doSaveAction();
    QCOMPARE(edited.size(), 1);
    QCOMPARE(device, before);
}

void TestContactDialog::oddTextsDoNotStay()
{
    ContactInfo device = plainDevice();
    device.product = QStringLiteral("OLD1");
    device.language = QStringLiteral("tlh");
    open(false, &device);
    QCOMPARE(input<QComboBox>("productComboBox")->currentText(), QStringLiteral("OLD1"));
    QCOMPARE(input<QComboBox>("languageComboBox")->currentText(), QStringLiteral("tlh"));
    open(true, nullptr);
    QCOMPARE(input<QComboBox>("productComboBox")->count(), 8);
    QCOMPARE(input<QComboBox>("languageComboBox")->count(), 21);
}

void TestContactDialog::oddTextIsReplacedByChoice()
{
    ContactInfo device = plainDevice();
    device.product = QStringLiteral("OLD1");
    device.language = QStringLiteral("tlh");
    device.dns_server1 = QStringLiteral("host.example.com");
    device.mac = QStringLiteral("0200A7A1B2C3");
    open(false, &device);
    input<QComboBox>("productComboBox")->setCurrentIndex(7);
    input<QComboBox>("languageComboBox")->setCurrentIndex(19);
    input<QPushButton>("showAdvanceButton")->click();
    input<IpLine>("dnsServer1IpLine")->focusPart(0);
    QTest::keyClick(QApplication::focusWidget(), '8');
    input<IpLine>("macIpLine")->focusPart(5);
    QTest::keyClick(QApplication::focusWidget(), 'd');
    m_dialog->doSaveAction();
    QCOMPARE(device.product, QStringLiteral("KTV32XX"));
    QCOMPARE(device.language, QStringLiteral("en_gb"));
    QCOMPARE(device.dns_server1, QStringLiteral("8..."));
    QCOMPARE(device.mac, QStringLiteral("02:00:A7:A1:B2:DF"));
}

void TestContactDialog::flags_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("saved");
    QTest::newRow("off") << "0"
                         << "No"
                         << "0";
    QTest::newRow("on") << "1"
                        << "Yes"
                        << "1";
    QTest::newRow("nothing") << ""
                             << "Yes"
                             << "1";
    QTest::newRow("anything else") << "No"
                                   << "Yes"
                                   << "1";
}

void TestContactDialog::flags()
{
    QFETCH(QString, stored);
    QFETCH(QString, shown);
    QFETCH(QString, saved);

    ContactInfo device = plainDevice();
    device.random_port = stored;
    device.keep_alive = stored;
    open(false, &device);
    QCOMPARE(input<QComboBox>("randomPortComboBox")->currentText(), shown);
    QCOMPARE(input<QComboBox>("keepAliveComboBox")->currentText(), shown);
    m_dialog->doSaveAction();
    QCOMPARE(device.random_port, saved);
    QCOMPARE(device.keep_alive, saved);
}

// Every input reaches its own field, and only that one.
void TestContactDialog::editEveryField()
{
    ContactInfo device = ContactForm::defaultContact();
    device.id = 7;
    open(false, &device);
    const ContactInfo wanted = plainDevice();
    input<IpLine>("macIpLine")->setText(wanted.mac);
    input<QComboBox>("productComboBox")->setCurrentText(wanted.product);
    input<QLineEdit>("firstAccountLineEdit")->setText(wanted.first_account);
    input<QLineEdit>("sipServerLineEdit")->setText(wanted.sip_server);
    input<QLineEdit>("sipUserIdLineEdit")->setText(wanted.sip_user_id);
    input<QLineEdit>("authIdLineEdit")->setText(wanted.auth_id);
    input<QLineEdit>("passwordLineEdit")->setText(wanted.password);
    input<QComboBox>("speechCoding1ComboBox")->setCurrentText(wanted.speech_coding1);
    input<QComboBox>("speechCoding2ComboBox")->setCurrentText(wanted.speech_coding2);
    input<QLineEdit>("usernameLineEdit")->setText(wanted.username);
    input<QComboBox>("languageComboBox")->setCurrentText(QStringLiteral("Chinese Traditional"));
    input<QComboBox>("randomPortComboBox")->setCurrentText(QStringLiteral("Yes"));
    input<QComboBox>("keepAliveComboBox")->setCurrentText(QStringLiteral("No"));
    input<IpLine>("ipIpLine")->setText(wanted.ip);
    input<IpLine>("subnetIpLine")->setText(wanted.subnet);
    input<IpLine>("gatewayIpIpLine")->setText(wanted.gateway_ip);
    input<IpLine>("dnsServer1IpLine")->setText(wanted.dns_server1);
    input<IpLine>("dnsServer2IpLine")->setText(wanted.dns_server2);
    input<QLineEdit>("phonebookPathLineEdit")->setText(wanted.phonebook_path);
    input<QLineEdit>("dialPlanLineEdit")->setText(wanted.dial_plan);
    input<QLineEdit>("cityLineEdit")->setText(wanted.city);
    input<QLineEdit>("companyLineEdit")->setText(wanted.company);
    input<QLineEdit>("departmentLineEdit")->setText(wanted.department);
    input<QLineEdit>("proxyServerLineEdit")->setText(wanted.proxy_server);
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
    QTest::newRow("reject") << Close([](ContactDialog &dialog) { dialog.reject(); });
    QTest::newRow("accept") << Close([](ContactDialog &dialog) { dialog.accept(); });
    QTest::newRow("hide") << Close([](ContactDialog &dialog) { dialog.hide(); });
}

void TestContactDialog::closingForgetsTheRecord()
{
    QFETCH(Close, closeDialog);

    ContactInfo device = plainDevice();
    const ContactInfo before = device;
    open(false, &device);
    QSignalSpy edited(m_dialog, SIGNAL(editSaveSucceed(ContactInfo *)));
    QSignalSpy added(m_dialog, SIGNAL(addSaveSucceed(ContactInfo)));
    input<QLineEdit>("cityLineEdit")->setText(QStringLiteral("elsewhere"));
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
    QSignalSpy finished(m_dialog, &QDialog::finished);
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
    const auto *area = input<QScrollArea>("formScrollArea");
    open(true, nullptr);
    auto *button = input<QPushButton>("showAdvanceButton");
    const auto *form = m_dialog->findChild<ContactForm *>();
    QCOMPARE(form->rowCount(), 24);

    const auto isBasic = [&] {
        return button->text() == QLatin1String("Show Advance Settings") && form->height() == 360 &&
               input<QComboBox>("speechCoding2ComboBox")->isVisible() &&
               !input<QLineEdit>("usernameLineEdit")->isVisible() &&
               !input<QLineEdit>("proxyServerLineEdit")->isVisible() &&
               !area->verticalScrollBar()->isVisible();
    };
    const auto isAdvanced = [&] {
        return button->text() == QLatin1String("Hide Advance Settings") && form->height() == 800 &&
               input<QLineEdit>("usernameLineEdit")->isVisible() &&
               input<QLineEdit>("proxyServerLineEdit")->isVisible() &&
               area->verticalScrollBar()->isVisible();
    };
    QTRY_VERIFY(isBasic());
    button->click();
    QTRY_VERIFY(isAdvanced());
    button->click();
    QTRY_VERIFY(isBasic());
    button->click();
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
    m_dialog->close();
    open(true, nullptr);
    QTRY_VERIFY(isBasic());
}

void TestContactDialog::layoutFits_data()
{
    QTest::addColumn<bool>("advanced");
    QTest::newRow("basic") << false;
    QTest::newRow("advanced") << true;
}

void TestContactDialog::layoutFits()
{
    QFETCH(bool, advanced);

    const auto *area = input<QScrollArea>("formScrollArea");
    QCOMPARE(area->geometry(), QRect(10, 10, 609, 371));
    open(true, nullptr);
    if (advanced)
        input<QPushButton>("showAdvanceButton")->click();
    QTRY_COMPARE(area->verticalScrollBar()->isVisible(), advanced);
    QVERIFY(!area->horizontalScrollBar()->isVisible());
    const QRect form(QPoint(0, 0), m_dialog->findChild<ContactForm *>()->size());
    int bottom = -1;
    const auto labels = m_dialog->findChild<ContactForm *>()->findChildren<QLabel *>(
        QString(), Qt::FindDirectChildrenOnly);
    for (const QLabel *label : labels) {
        if (!label->isVisible())
            continue;
        QCOMPARE(label->size(), QSize(180, 30));
        QCOMPARE(label->alignment(), Qt::AlignRight | Qt::AlignVCenter);
        const QByteArray name = label->text().toUtf8();
        QVERIFY2(label->sizeHint().width() <= label->width(), name.constData());
        const QWidget *buddy = label->buddy();
        QVERIFY2(form.contains(label->geometry()) && form.contains(buddy->geometry()),
                 name.constData());
        QVERIFY2(buddy->height() >= buddy->minimumSizeHint().height(), name.constData());
        QVERIFY2(buddy->y() > bottom, name.constData());
        bottom = buddy->geometry().bottom();
    }
    const auto buttons = m_dialog->findChildren<QPushButton *>();
    for (const QPushButton *button : buttons) {
        QVERIFY(m_dialog->rect().contains(button->geometry()));
        QVERIFY(button->y() > area->geometry().bottom());
    }
}

void TestContactDialog::styleClassesAndNames()
{
    int count = 0;
    const auto labels = m_dialog->findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (!label->buddy())
            continue;
        ++count;
        QCOMPARE(label->property("class").toString(), QStringLiteral("ContactDialogItemLabel"));
        QCOMPARE(label->buddy()->property("class").toString(),
                 QStringLiteral("ContactDialogItemEdit"));
        QCOMPARE(label->buddy()->accessibleName(), label->text());
    }
    QCOMPARE(count, 24);
}

void TestContactDialog::wheelPassesBy()
{
    open(true, nullptr);
    input<QPushButton>("showAdvanceButton")->click();
    auto *box = input<QComboBox>("speechCoding1ComboBox");
    const auto *bar = input<QScrollArea>("formScrollArea")->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    const auto turn = [box] {
        const QPointF center = QRectF(box->rect()).center();
        QWheelEvent event(center, box->mapToGlobal(center.toPoint()), {}, QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        // Only what comes from the system climbs to the parents, and sendEvent() undoes that.
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(box, &event);
    };
    turn();
    QCOMPARE(box->currentIndex(), 0);
    QVERIFY(bar->value() > 0);
    box->setFocus();
    turn();
    QCOMPARE(box->currentIndex(), 1);
}

void TestContactDialog::toolTip()
{
    open(true, nullptr);
    auto *tip = m_dialog->findChild<ToolTipWidget *>();
    QVERIFY(tip->windowFlags().testFlag(Qt::ToolTip));
    QCOMPARE(tip->property("class").toString(), QStringLiteral("ToolTipWidget"));
    QWidget *anchor = input<QPushButton>("saveButton");
    const QWidget *focused = QApplication::focusWidget();
    tip->showMessage(QStringLiteral("<b>short</b>"), anchor, 20);
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
