#include "dialogs/ContactDialog.h"
#include "dialogs/IpPart.h"
#include "tests/FormFixture.h"

#include <QSignalSpy>

class TestContactDialog : public QObject, FormFixture<ContactDialog>
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    // Nothing is left of the earlier device, and what is not typed has its default.
    void addByKeyboard()
    {
        ContactInfo earlier = plainDevice();
        earlier.product = "OLD1"_s;
        open(&earlier);
        m_dialog->close();
        open();
        const QSignalSpy added(m_dialog.get(), SIGNAL(addSaveSucceed(ContactInfo)));
        typeKeys("a1b2c3\t");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        typeKeys("\t1001 \r");

        QVERIFY(!m_dialog->isVisible());
        ContactInfo expected;
        expected.mac = "02:00:A7:A1:B2:C3"_s;
        expected.product = "KTP21XX"_s;
        expected.first_account = "1001 "_s;
        expected.speech_coding1 = "PCMU"_s;
        expected.speech_coding2 = "PCMA"_s;
        expected.language = "en"_s;
        expected.random_port = "0"_s;
        expected.keep_alive = "0"_s;
        expected.dial_plan = "{ x+ | *x+ | *xx*x+ }"_s;
        QCOMPARE(added.value(0).value(0).value<ContactInfo>(), expected);
    }

    void oddTextsSurvive()
    {
        using I = ContactInfo;
        const std::pair<QString I::*, QString> rows[] = {
            {&I::mac, "2:0:A7:A1:B2:C3"_s},
            {&I::gateway_ip, "192.168"_s},
            {&I::product, "ktp16xx"_s},
            {&I::speech_coding1, "OPUS & Co"_s},
            {&I::language, "tlh"_s},
            {&I::random_port, QString()},
            {&I::random_port, "0"_s},
            {&I::first_account, "  1001 "_s},
            {&I::dial_plan, "{ x+ }\n{ *x+ }\t"_s},
            {&I::phonebook_path, QString(40000, QLatin1Char('x'))}};
        for (const auto &[member, stored] : rows) {
            ContactInfo device = plainDevice();
            device.*member = stored;
            const ContactInfo before = device;
            open(&device);
            const QSignalSpy edited(m_dialog.get(), SIGNAL(editSaveSucceed(ContactInfo *)));
            m_dialog->doSaveAction();
            QCOMPARE(edited.size(), 1);
            QVERIFY2(device == before, qPrintable(stored));
            QCOMPARE(box("randomPortComboBox")->currentText(),
                     device.random_port == "0"_s ? "No"_s : "Yes"_s);
        }
    }

    // Every input reaches its own field, and only that one.
    void editEveryField()
    {
        const ContactInfo wanted = plainDevice();
        ContactInfo device = stampedDevice("odd"_s);
        device.id = wanted.id;
        device.random_port = "0"_s; // any value that is neither yes nor no shows as the chosen yes
        open(&device);
        enterChoices(wanted);
        m_dialog->doSaveAction();
        for (const ContactField &field : contactFields())
            QCOMPARE(device.*field.member, wanted.*field.member);
        QCOMPARE(device.id, wanted.id);
    }

    void refusedOrClosedTheRecordIsAsItWas()
    {
        ContactInfo device = plainDevice();
        const ContactInfo before = device;
        const QSignalSpy edited(m_dialog.get(), SIGNAL(editSaveSucceed(ContactInfo *)));
        for (const QByteArray &way :
             {QByteArray(), QByteArray("saveButton"), QByteArray("cancelButton")}) {
            open(&device);
            city()->setText("not this"_s);
            auto *const mac = input<IpLine>("macIpLine");
            if (way == "saveButton")
                mac->setText(":00:A7:A1:B2:C3"_s);
            if (way.isEmpty())
                QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Escape);
            else
                QTest::mouseClick(input<QPushButton>(way), Qt::LeftButton);
            QCOMPARE(m_dialog->isVisible(), way == "saveButton");
            if (m_dialog->isVisible()) {
                QCOMPARE(visibleTip(), "Please fulfill correct MAC address!"_s);
                QVERIFY(mac->parts().first()->hasFocus());
                mac->setText(device.mac);
                m_dialog->close();
            }
            // The record may be gone by now: nothing writes to it any more.
            m_dialog->doSaveAction();
            QCOMPARE(device, before);
        }
        QCOMPARE(edited.size(), 0);
    }

    // The receiver of the record may want it entered again: at once, or after a question.
    void comesBackWithWhatWasTyped()
    {
        ContactInfo device = plainDevice();
        connect(m_dialog.get(), &ContactDialog::editSaveSucceed, this,
                [this, refuse = true](ContactInfo *) mutable {
                    if (std::exchange(refuse, false))
                        m_dialog->bringBack();
                });
        open(&device);
        city()->setText("elsewhere"_s);
        m_dialog->doSaveAction();
        QVERIFY(m_dialog->isVisible());
        m_dialog->move(m_dialog->pos() + QPoint(31, 17));
        const QPoint place = m_dialog->pos();
        m_dialog->doSaveAction();
        QVERIFY(!m_dialog->isVisible());

        m_dialog->bringBackFor(&device);
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(m_dialog->pos(), place);
        QCOMPARE(city()->text(), "elsewhere"_s);
        city()->setText("at home"_s);
        m_dialog->doSaveAction();
        QCOMPARE(device.city, "at home"_s);
    }

    void wheelPassesBy()
    {
        open();
        input<QPushButton>("showAdvanceButton")->click();
        auto *codec = box("speechCoding1ComboBox");
        const auto *bar = input<QScrollArea>("formScrollArea")->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        const auto turn = [codec] {
            const QPointF center = QRectF(codec->rect()).center();
            QWheelEvent event(center, codec->mapToGlobal(center.toPoint()), {}, QPoint(0, -120),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            // Parents get only events that came from the system, which sendEvent() denies.
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

private:
    /// A device that the dialog can show in full.
    static ContactInfo plainDevice()
    {
        ContactInfo device = choosableDevice();
        device.id = 7;
        device.mac = "02:00:A7:A1:B2:C3"_s;
        device.ip = "192.168.1.20"_s;
        device.subnet = "255.255.255.0"_s;
        device.gateway_ip = "192.168.1.1"_s;
        device.dns_server1 = "9.9.9.9"_s;
        device.dns_server2 = QString();
        return device;
    }
    void open(ContactInfo *device = nullptr)
    {
        m_dialog->loadContact(!device, device);
        showDialog();
    }
    QComboBox *box(const char *name) const { return input<QComboBox>(name); }
    QLineEdit *city() const { return input<QLineEdit>("cityLineEdit"); }
};

QTEST_MAIN(TestContactDialog)
#include "tst_contactdialog.moc"
