#pragma once

#include "dialogs/ContactForm.h"
#include "dialogs/FormDialog.h"
#include "dialogs/IpLine.h"
#include "model/ContactFields.h"
#include "tests/Literal.h"
#include "tests/TestDevices.h"
#include "widgets/ToolTipWidget.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <memory>

/// A dialog with a form, in the program's own style sheet, and what its user sees of it.
template <typename Dialog>
class FormFixture
{
protected:
    void setUp() { m_dialog = std::make_unique<Dialog>(); }
    void tearDown() { m_dialog.reset(); }

    void showDialog()
    {
        m_dialog->show();
        QApplication::setActiveWindow(m_dialog.get());
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    }

    template <typename Input>
    Input *input(const char *name) const
    {
        return m_dialog->template findChild<Input *>(QLatin1String(name));
    }

    /// Types into whatever has the focus, which moves on within an address.
    static void typeKeys(const char *keys)
    {
        for (const char *key = keys; *key; ++key)
            QTest::keyClick(QApplication::focusWidget(), *key);
    }

    /// A device whose texts all differ. Each of its choices is on offer, and none is the first.
    static ContactInfo choosableDevice()
    {
        ContactInfo device = stampedDevice("a"_s);
        device.product = "DK71X"_s;
        device.speech_coding1 = "GSM"_s;
        device.speech_coding2 = "PCMU"_s;
        device.language = "zh-tw"_s;
        device.random_port = "1"_s;
        device.keep_alive = "0"_s;
        return device;
    }

    /// Enters each field that has an input, under the name that goes with its column: choices by
    /// their text.
    void enterChoices(ContactInfo device)
    {
        device.language = "Chinese Traditional"_s;
        device.random_port = "Yes"_s;
        device.keep_alive = "No"_s;
        for (const ContactField &field : contactFields()) {
            QString name = QLatin1String(field.column);
            for (int at; (at = name.indexOf(QLatin1Char('_'))) >= 0;)
                name.replace(at, 2, name.at(at + 1).toUpper());
            const QString text = device.*field.member;
            if (auto *const line = m_dialog->template findChild<IpLine *>(name + "IpLine"_s))
                line->setText(text);
            if (auto *const box = m_dialog->template findChild<QComboBox *>(name + "ComboBox"_s))
                box->setCurrentText(text);
            if (auto *const edit = m_dialog->template findChild<QLineEdit *>(name + "LineEdit"_s))
                edit->setText(text);
        }
    }

    QString visibleTip() const
    {
        const auto *const tip = m_dialog->template findChild<ToolTipWidget *>();
        return tip->isVisible() ? tip->text() : QString();
    }

    std::unique_ptr<Dialog> m_dialog;
};
